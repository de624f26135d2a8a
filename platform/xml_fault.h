// Internal: what can be wrong with a document. xml_stream_parser.cpp has the table of their public codes and texts.
#pragma once

namespace NUVEK_2_18::parser {

enum class xml_fault
{
    none,
    end_tag_mismatch,
    attribute_redefined,
    missing_quote,
    unknown_entity,
    missing_equal,
    unknown_encoding,  // the declared encoding is not supported, or contradicts the bytes
    read_failed,
    too_large,  // larger than the reader of the file allows
    no_declaration,
    no_root,

    // The public code of all others is unexpected_character.
    unexpected_character,
    not_utf8,
    not_utf8_but_latin1,   // and so is the rest of the file
    not_utf8_but_windows,  // the same, with bytes that Windows-1252 adds to Latin-1
    not_utf16,
    not_ascii,
    forbidden_character,  // which no document may contain
    end_inside_markup,
    bad_name,
    bare_less_than,
    bad_tag_end,
    missing_space,
    less_than_in_value,
    bare_ampersand,
    missing_semicolon,
    bad_character_reference,
    cdata_end_in_text,
    double_hyphen,
    reserved_target,
    late_declaration,
    text_outside_root,
    second_root,
    bad_doctype,
    bad_declaration,
};

// Returns the fault in a few words, without the place.
const char* text_of(xml_fault fault);

}  // namespace NUVEK_2_18::parser
