#include "data_mapper/enum_texts.h"

#include <cstdint>
#include <iterator>

#include "data_mapper/map_kind.h"

namespace data_mapper4 {

namespace {

// In the order of their values, which begin at 0.
constexpr const char* result_texts[] = {
    "no_error",       "file_not_found",   "invalid_format", "collection_error",
    "duplicate_item", "duplicate_attrib", "duplicate_map",  "memory_error",
};

}  // namespace

const char* text_of(map_error_t::result_type type)
{
    const auto index = static_cast<std::uint32_t>(type);
    return index < std::size(result_texts) ? result_texts[index] : nullptr;
}

const char* text_of(map_type type)
{
    const map_kind* const kind = find_kind(type);
    if (kind != nullptr) return kind->text;
    return type == MT_UNKNOWN ? "MT_UNKNOWN" : nullptr;
}

}  // namespace data_mapper4
