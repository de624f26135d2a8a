// Internal: checks that a text is a well-formed document, and writes the index of its elements.
#pragma once

#include <cstddef>

#include "platform/text_buffer.h"
#include "platform/text_encoding.h"
#include "platform/xml_fault.h"
#include "platform/xml_index.h"

namespace NUVEK_2_18::parser {

struct xml_document
{
    xml_fault fault = xml_fault::none;
    std::size_t fault_line = 0;  // from 1
    bool is_complete = false;    // not if there is a fault, or an element is open where the text ends
    text_buffer text;            // cut before the construct that is at fault
    xml_index index;             // of the elements in that text
};

// Checks the document from end to end. Time: linear, at most two passes. Memory: eight bytes for each element, attribute
// and stretch of text, and while an element is open another eight.
xml_document check_document(document_text source, bool is_declaration_optional);

}  // namespace NUVEK_2_18::parser
