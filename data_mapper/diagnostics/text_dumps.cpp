#include "data_mapper/diagnostics/text_dumps.h"

#include <cstdint>
#include <iostream>
#include <iterator>

#include "data_mapper/map_kind.h"

namespace data_mapper4 {

namespace {

// In the order of the codes, which begin at 0.
constexpr const char* parse_error_texts[] = {
    "no_error",
    "incomplete",
    "unknown_parse_error",  // reserved
    "end_of_file",
    "end_tag_mismatch",
    "attribute_redefined",
    "unexpected_character",
    "missing_quote",
    "unknown_entity",
    "missing_equal",
    "fatal_error",
    "file_not_found",
    "no_xml_header",
    "no_root_tag",
};

}  // namespace

// Takes copies, which is convenient when it is called by hand from a debugger.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
void dump_node(NUVEK_2_18::parser::xml_stream_parser::node node, ustring8 prefix)
{
    std::cout << prefix << (prefix.empty() ? "Node tag:  " : " node tag:  ") << node.tag << ", line:  ";
    std::cout << std::to_string(node.line) << ", status = " << parse_error_as_string(node.status) << std::endl;
    for (const auto& attribute : node.attributes) {
        std::cout << "           Attrib name:  " << attribute.first << ", value: <" << attribute.second << ">"
                  << std::endl;
    }
    if (!node.data.empty()) std::cout << "           Data:  " << node.data << std::endl;
}

ustring8 parse_error_as_string(NUVEK_2_18::parser::xml_stream_parser::error_type error)
{
    const auto code = static_cast<std::uint32_t>(error);
    return code < std::size(parse_error_texts) ? parse_error_texts[code] : "unknown_parse_error";
}

ustring8 map_type_label(map_type type)
{
    const char* const text = text_of(type);
    return text == nullptr ? "<Unknown>" : text;
}

}  // namespace data_mapper4
