// Internal: how wide a terminal shows characters.
#pragma once

#include <cstddef>

namespace NUVEK_2_18::unicode {

// The columns that a terminal with a fixed-width font takes for the character: 0 for one that combines with the one before
// it, 2 for a wide one, mostly of East Asia, otherwise 1.
std::size_t display_width(char32_t code_point);

}  // namespace NUVEK_2_18::unicode
