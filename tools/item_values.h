// The values of an item of any kind of map.
#pragma once

#include <map>
#include <vector>

#include "data_mapper/map_collection.h"

namespace data_mapper4::tool {

using attribute_set = std::map<ustring8, ustring8>;

struct item_values
{
    bool is_list = false;             // otherwise there is just one value
    std::vector<ustring8> texts;      // of a map without attributes
    std::vector<attribute_set> sets;  // of a map with attributes
};

bool has_attributes(map_type kind);

// The item must be in the map.
item_values values_of(map_collection& maps, const ustring8& map, const ustring8& item);

}  // namespace data_mapper4::tool
