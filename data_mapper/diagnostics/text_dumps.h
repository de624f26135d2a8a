// Internal: printers for debugging the node stream. Nothing in the library calls them; they are not exported.
#pragma once

#include "data_mapper/map_error_t.h"
#include "platform/xml_stream_parser.h"

namespace data_mapper4 {

// Writes a node to the standard output: a head line, a line for each attribute and, if there is any, one for its data.
// The head line begins with the prefix, if it is not empty. Not locked: concurrent calls may interleave.
void dump_node(NUVEK_2_18::parser::xml_stream_parser::node node, ustring8 prefix);

// The name of the code; "unknown_parse_error" for a value that is none, and for the reserved one.
ustring8 parse_error_as_string(NUVEK_2_18::parser::xml_stream_parser::error_type error);

// The name of the kind; "<Unknown>" for a value that is none.
ustring8 map_type_label(map_type type);

}  // namespace data_mapper4
