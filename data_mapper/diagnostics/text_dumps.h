// Internal: printers for debugging. Nothing in the library calls them, and they are not exported.
#pragma once

#include "data_mapper/map_error_t.h"
#include "platform/xml_stream_parser.h"

namespace data_mapper4 {

// Writes a node to standard output: a head line, a line for each attribute and, if the node has data, one for that. The
// head line begins with the prefix. Not locked: the output of concurrent calls may interleave.
void dump_node(NUVEK_2_18::parser::xml_stream_parser::node node, ustring8 prefix);

// Returns the name of the code; "unknown_parse_error" for the reserved code and for a value that is not a code.
ustring8 parse_error_as_string(NUVEK_2_18::parser::xml_stream_parser::error_type error);

// Returns the name of the kind; "<Unknown>" for a value that is not a map_type.
ustring8 map_type_label(map_type type);

}  // namespace data_mapper4
