// Internal: gives the library access to the elements in a parser's queue.
#pragma once

#include <memory>

namespace NUVEK_2_18::parser {

struct xml_document;
class xml_element_queue;
class xml_stream_parser;

// The parser's queue, the same one that the parser's own operations use. If the host has asked for the front node, the
// front element is that node with the host's changes, until the next node is made.
xml_element_queue& elements_of(xml_stream_parser& parser);

// Returns a parser of a document that has been read already; of a file that is not there if it is null.
std::unique_ptr<xml_stream_parser> make_parser(std::shared_ptr<const xml_document> document);

}  // namespace NUVEK_2_18::parser
