// Internal: checks that a text is a well-formed document.
#pragma once

#include <cstddef>

#include "platform/text_encoding.h"
#include "platform/xml_stream_parser.h"

namespace NUVEK_2_18::parser {

struct checked_document
{
    xml_stream_parser::error_type outcome;  // end_of_file, incomplete or a fault
    std::size_t sound_size;      // the text up to here is sound: all of it, or what precedes the faulty construct
    std::size_t fault_position;  // where the fault was found
    std::size_t nodes;           // how many nodes the sound text holds
    bool has_mixed_text;         // whether text other than white space may stand behind a child element
};

// Checks the document from end to end. Time: linear; memory: a view of each open element's name.
checked_document check_document(const document_text& document, bool header_optional);

}  // namespace NUVEK_2_18::parser
