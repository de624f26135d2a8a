#include "data_mapper/map_kind.h"

#include <algorithm>
#include <iterator>

namespace data_mapper4 {

namespace {

template <class condition>
const map_kind* find_kind_if(condition is_wanted)
{
    const auto* const found = std::find_if(std::begin(map_kinds), std::end(map_kinds), is_wanted);
    return found == std::end(map_kinds) ? nullptr : found;
}

}  // namespace

const map_kind* find_kind(std::string_view tag)
{
    return find_kind_if([=](const map_kind& kind) { return kind.tag == tag; });
}

const map_kind* find_kind(map_type type)
{
    return find_kind_if([=](const map_kind& kind) { return kind.type == type; });
}

}  // namespace data_mapper4
