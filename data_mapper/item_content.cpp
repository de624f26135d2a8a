#include "data_mapper/item_content.h"

namespace data_mapper4 {

namespace {

bool is_waiting(xml_stream_parser& parser, const char* tag)
{
    return !parser.node_queue_empty() && parser.node_queue_front().tag == tag;
}

}  // namespace

bool is_item_waiting(xml_stream_parser& parser)
{
    return is_waiting(parser, "item");
}

bool is_arg_waiting(xml_stream_parser& parser)
{
    return is_waiting(parser, "arg");
}

bool has_form(const xml_stream_parser::node& element, element_form form)
{
    const auto& attributes = element.attributes;
    if (attributes.empty() || attributes.front().first != "name") return false;
    if (form == element_form::name_only && attributes.size() != 1) return false;
    return element.data.empty();
}

ustring8& name_of(xml_stream_parser::node& element)
{
    return element.attributes.front().second;
}

map_error_t::result_type check_item(xml_stream_parser::node& item, element_form form, xml_stream_parser& parser)
{
    if (!has_form(item, form) || name_of(item).empty()) return map_error_t::invalid_format;
    // An item that carries its attributes itself needs nothing behind it.
    if (form == element_form::name_only && parser.node_queue_empty()) return map_error_t::invalid_format;
    return map_error_t::no_error;
}

}  // namespace data_mapper4
