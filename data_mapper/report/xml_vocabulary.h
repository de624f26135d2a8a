// Internal: names that people use in XML files, for advice.
#pragma once

#include <string_view>

#include "platform/ustring.h"

namespace data_mapper4 {

using NUVEK_2_18::strings::ustring8;

// Whether a file of maps may contain such an element.
bool is_known_tag(std::string_view tag);

// Returns the code point of an entity that other formats have; 0 if it is not known.
int code_point_of_entity(std::string_view name);

// Whether files may be in this encoding, and the one that a name like it probably means; empty if there is none.
bool is_known_encoding(std::string_view name);
ustring8 nearest_encoding(std::string_view name);

}  // namespace data_mapper4
