// Internal: gives the tables access to the elements in a parser's queue.
#pragma once

namespace NUVEK_2_18::parser {

class xml_element_queue;
class xml_stream_parser;

// The parser's queue, the same one that the parser's own operations use. If the host has asked for the front node, the
// front element is that node with the host's changes, until the next node is made.
xml_element_queue& elements_of(xml_stream_parser& parser);

}  // namespace NUVEK_2_18::parser
