// Internal: a document's bytes -> its text in UTF-8.
#pragma once

#include "platform/text_buffer.h"
#include "platform/xml_stream_parser.h"

namespace NUVEK_2_18::parser {

struct document_text
{
    text_buffer text;  // well-formed UTF-8 of characters that XML allows, every line end a single LF
    xml_stream_parser::error_type fault_at_end =
        xml_stream_parser::no_error;  // why the text goes no further, if it does not
};

// Bytes that no character can be made of end the text with unexpected_character. An encoding that is unknown, or that
// the byte order mark or the bytes contradict, ends it with fatal_error, where the header names that encoding.
document_text decode_document(text_buffer bytes);

}  // namespace NUVEK_2_18::parser
