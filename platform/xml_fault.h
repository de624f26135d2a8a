// Internal: what can be wrong with a document. xml_stream_parser.cpp has the table that maps it to the public codes.
#pragma once

namespace NUVEK_2_18::parser {

enum class xml_fault
{
    none,
    end_tag_mismatch,
    attribute_redefined,
    unexpected_character,
    missing_quote,
    unknown_entity,
    missing_equal,
    unreadable,  // the encoding is unknown or contradicts the bytes, or reading the file failed
    no_declaration,
    no_root,
};

}  // namespace NUVEK_2_18::parser
