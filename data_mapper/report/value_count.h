// Internal: counts the values that the maps of a document would have, before they are loaded.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "platform/xml_document.h"

namespace data_mapper4 {

// Subtracts the number of values of a document's maps, as check_options::max_values counts them, from `left`. Returns
// the position of the first map that has more values than are left, if there is one. Faulty maps may have fewer than
// are counted. Cost: linear in the document's index.
std::optional<std::size_t> take_values(const NUVEK_2_18::parser::xml_document& document, std::uint64_t& left);

}  // namespace data_mapper4
