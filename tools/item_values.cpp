#include "tools/item_values.h"

namespace data_mapper4::tool {

bool has_attributes(map_type kind)
{
    return kind == MT_COLLECTION || kind == MT_VECTOR_COLLECTION;
}

item_values values_of(map_collection& maps, const ustring8& map, const ustring8& item)
{
    item_values values;
    switch (maps.type(map)) {
        case MT_SIMPLE:
            maps.get_arg(map, item, values.texts.emplace_back());
            break;
        case MT_VECTOR:
            values.is_list = true;
            maps.get_args(map, item, values.texts);
            break;
        case MT_COLLECTION:
            maps.get_attribs(map, item, values.sets.emplace_back());
            break;
        case MT_VECTOR_COLLECTION:
            values.is_list = true;
            maps.get_args_vector(map, item, values.sets);
            break;
        case MT_UNKNOWN:
            break;
    }
    return values;
}

}  // namespace data_mapper4::tool
