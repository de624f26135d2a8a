// Internal: what may precede the root element besides comments and processing instructions.
#pragma once

#include <string_view>

#include "platform/xml_cursor.h"

namespace NUVEK_2_18::parser {

bool is_at_declaration(const xml_cursor& cursor);

// Takes the XML declaration. `encoding` is the declared one, empty if there is none; it is set even if the declaration
// has a fault further on.
bool take_declaration(xml_cursor& cursor, std::string_view& encoding);

// Takes a document type declaration: its outer shape is checked, and of what it declares only where that ends.
bool take_doctype(xml_cursor& cursor);

}  // namespace NUVEK_2_18::parser
