// Internal: the texts of the library's enumerations.
#pragma once

#include "data_mapper/map_error_t.h"

namespace data_mapper4 {

// The enumerator's name, or nullptr for a value that is none of the enumerators.
const char* text_of(map_error_t::result_type type);
const char* text_of(map_type type);

}  // namespace data_mapper4
