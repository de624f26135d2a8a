#include "data_mapper/enum_texts.h"

#include <cstddef>

namespace data_mapper4 {

namespace {

// In the order of their values, which begin at 0.
constexpr const char* result_texts[] = {
    "no_error",       "file_not_found",   "invalid_format", "collection_error",
    "duplicate_item", "duplicate_attrib", "duplicate_map",  "memory_error",
};
constexpr const char* map_type_texts[] = {
    "MT_SIMPLE", "MT_COLLECTION", "MT_VECTOR", "MT_VECTOR_COLLECTION", "MT_UNKNOWN",
};

template <std::size_t size>
const char* text_at(const char* const (&texts)[size], std::int32_t value)
{
    const auto index = static_cast<std::uint32_t>(value);
    return index < size ? texts[index] : nullptr;
}

}  // namespace

const char* text_of(map_error_t::result_type type)
{
    return text_at(result_texts, type);
}

const char* text_of(map_type type)
{
    return text_at(map_type_texts, type);
}

}  // namespace data_mapper4
