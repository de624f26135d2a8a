// Internal: checks that a text is a well-formed document, and builds the index of its elements.
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
    std::size_t fault_begin = 0;  // where the fault is, in bytes from the beginning of the text
    bool is_complete = false;     // false if there is a fault, or if an element is open at the end of the text
    text_buffer text;
    std::size_t sound_size = 0;  // the bytes of text before the faulty construct; all if there is no fault
    xml_index index;             // of the elements in those bytes
};

// Checks the document from beginning to end. Time: linear, at most two passes. xml_stream_parser.h says how much memory
// the index takes.
xml_document check_document(document_text source, bool is_declaration_optional);

}  // namespace NUVEK_2_18::parser
