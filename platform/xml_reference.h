// Internal: references, and the resolving of them in text and attribute values.
#pragma once

#include <string_view>

#include "platform/ustring.h"
#include "platform/xml_cursor.h"

namespace NUVEK_2_18::parser {

// Takes the reference at the cursor, which must be at a `&`: one of the five predefined entities or a character
// reference. Sets `code_point` to the character it refers to.
bool take_reference(xml_cursor& cursor, char32_t& code_point);

// Append character data or an attribute value that has been checked, with its references resolved. In a value, each
// white-space character becomes a space.
void append_text(std::string_view raw, strings::ustring8& to);
void append_value(std::string_view raw, strings::ustring8& to);

}  // namespace NUVEK_2_18::parser
