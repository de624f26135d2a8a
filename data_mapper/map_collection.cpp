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
    switch (error) {
        case xml_stream_parser::end_tag_mismatch:
        case xml_stream_parser::attribute_redefined:
        case xml_stream_parser::unexpected_character:
        case xml_stream_parser::missing_quote:
        case xml_stream_parser::unknown_entity:
        case xml_stream_parser::missing_equal:
        case xml_stream_parser::fatal_error:
        case xml_stream_parser::no_xml_header:
        case xml_stream_parser::no_root_tag:
            converted.type(map_error_t::invalid_format);
            break;
        case xml_stream_parser::file_not_found:
            converted.type(map_error_t::file_not_found);
            break;
        default:
            break;
    }
    return converted;
}

}  // namespace data_mapper4
