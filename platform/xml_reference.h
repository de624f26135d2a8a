// Internal: references, and the texts that may hold them.
#pragma once

#include <string_view>

#include "platform/ustring.h"
#include "platform/xml_cursor.h"

namespace NUVEK_2_18::parser {

// Takes the reference at the cursor, which is at a `&`: one of the five predefined entities or a character reference.
// `code_point` is the character it refers to.
bool take_reference(xml_cursor& cursor, char32_t& code_point);

// Appends checked character data, or a checked attribute value, with its references resolved; in a value white space
// becomes spaces.
void append_text(std::string_view raw, strings::ustring8& to);
void append_value(std::string_view raw, strings::ustring8& to);

}  // namespace NUVEK_2_18::parser
