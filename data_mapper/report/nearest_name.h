// Internal: finds the name that a misspelled one was probably meant to be.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "platform/ustring.h"

namespace data_mapper4 {

using NUVEK_2_18::strings::ustring8;

// Returns the candidate that differs from the name in the fewest letters added, left out, changed or swapped, with
// letter case counting little; the first of several. Empty if none is near. Only the first `most` candidates are
// compared, and only short names, so the time is bounded.
std::string_view nearest_name(std::string_view name, const std::vector<ustring8>& candidates, std::size_t most = 100);

}  // namespace data_mapper4
