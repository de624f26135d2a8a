// Internal: how the tables get at the elements in a parser's queue.
#pragma once

namespace NUVEK_2_18::parser {

class xml_element_queue;
class xml_stream_parser;

// The queue of the parser, on which the parser's own operations work, too. If the host has looked at the node in front,
// the front element is that node as the host left it, until the next node is made.
xml_element_queue& elements_of(xml_stream_parser& parser);

}  // namespace NUVEK_2_18::parser
