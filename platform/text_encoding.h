// Internal: decodes a document's bytes to text in UTF-8.
#pragma once

#include "platform/text_buffer.h"
#include "platform/xml_fault.h"

namespace NUVEK_2_18::parser {

struct document_text
{
    text_buffer text;  // well-formed UTF-8, only characters that XML allows, every line end a single LF
    xml_fault fault_at_end = xml_fault::none;  // why the text ends early, if it does
};

// Bytes that are not a character of XML end the text. So does an encoding that is unknown or contradicts the bytes: just
// after its name in the XML declaration.
document_text decode_document(text_buffer bytes);

}  // namespace NUVEK_2_18::parser
