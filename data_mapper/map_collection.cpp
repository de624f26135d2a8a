#include "data_mapper/map_collection.h"

#include "data_mapper/enum_texts.h"

namespace data_mapper4 {

map_collection::map_collection() = default;
map_collection::map_collection(const map_collection& other) = default;
map_collection::~map_collection() = default;
map_collection& map_collection::operator=(const map_collection& other) = default;

ustring8 map_collection::map_error_as_string(map_error_t error)
{
    const char* const text = text_of(error.type());
    return text == nullptr ? "unknown_map_error" : text;
}

ustring8 map_collection::map_type_as_string(map_type type)
{
    const char* const text = text_of(type);
    return text == nullptr ? "UNKNOWN" : text;
}

// What the parser calls incomplete, and any code that is not known here, count as success: the nodes themselves then
// show what they are worth.
map_error_t map_collection::convert_error(xml_stream_parser::error_type error)
{
    map_error_t converted;
    if ((error >= 4 && error <= 10) || error == 12 || error == 13) {
        converted.type(map_error_t::invalid_format);
    } else if (error == xml_stream_parser::file_not_found) {
        converted.type(map_error_t::file_not_found);
    }
    return converted;
}

}  // namespace data_mapper4
