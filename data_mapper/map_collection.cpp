#include "data_mapper/map_collection.h"

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

map_collection::map_collection() = default;
map_collection::map_collection(const map_collection& other) = default;
map_collection::~map_collection() = default;

map_collection& map_collection::operator=(const map_collection& other)
{
    if (this == &other) return *this;
    m_is_torn = true;  // until the end, which an exception may prevent
    m_file = other.m_file;
    m_base_dir = other.m_base_dir;
    m_error = other.m_error;
    m_maps = other.m_maps;
    m_simple_maps = other.m_simple_maps;
    m_collection_maps = other.m_collection_maps;
    m_vector_maps = other.m_vector_maps;
    m_vector_collection_maps = other.m_vector_collection_maps;
    m_is_torn = other.m_is_torn;
    return *this;
}

ustring8 map_collection::map_error_as_string(map_error_t error)
{
    const auto code = static_cast<std::uint32_t>(error.type());
    return code < std::size(result_texts) ? result_texts[code] : "unknown_map_error";
}

ustring8 map_collection::map_type_as_string(map_type type)
{
    const char* const text = text_of(type);
    return text == nullptr ? "UNKNOWN" : text;
}

// Incomplete documents count as success, and so does any unknown code: the nodes will show what is missing.
map_error_t map_collection::convert_error(xml_stream_parser::error_type error)
{
    map_error_t converted;
    if (error == xml_stream_parser::file_not_found) {
        converted.type(map_error_t::file_not_found);
    } else if (error >= xml_stream_parser::end_tag_mismatch && error <= xml_stream_parser::no_root_tag) {
        converted.type(map_error_t::invalid_format);
    }
    return converted;
}

}  // namespace data_mapper4
