// Internal: a document's bytes -> its text in UTF-8.
#pragma once

#include "platform/text_buffer.h"
#include "platform/xml_fault.h"

namespace NUVEK_2_18::parser {

struct document_text
{
    text_buffer text;  // well-formed UTF-8 of characters that XML allows, every line end a single LF
    xml_fault fault_at_end = xml_fault::none;  // why the text goes no further, if it does not
};

// Bytes that are no character end the text with unexpected_character. An encoding that is unknown, or that the BOM or
// the bytes contradict, ends it with unreadable where the declaration names that encoding.
document_text decode_document(text_buffer bytes);

}  // namespace NUVEK_2_18::parser
