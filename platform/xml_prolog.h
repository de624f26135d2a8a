// Internal: the XML declaration and the document type declaration.
#pragma once

#include <string_view>

#include "platform/xml_cursor.h"

namespace NUVEK_2_18::parser {

bool is_at_declaration(const xml_cursor& cursor);

// Takes the XML declaration. Sets `encoding` to the declared one, if there is one, even if a later part of the
// declaration is faulty.
bool take_declaration(xml_cursor& cursor, std::string_view& encoding);

// Takes a document type declaration. Checks its overall syntax; the declarations inside it are checked only for where
// they end.
bool take_doctype(xml_cursor& cursor);

}  // namespace NUVEK_2_18::parser
