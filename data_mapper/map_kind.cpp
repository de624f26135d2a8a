#include "data_mapper/map_kind.h"

namespace data_mapper4 {

const map_kind* find_kind(std::string_view tag)
{
    for (const map_kind& kind : map_kinds) {
        if (kind.tag == tag) return &kind;
    }
    return nullptr;
}

const map_kind* find_kind(map_type type)
{
    for (const map_kind& kind : map_kinds) {
        if (kind.type == type) return &kind;
    }
    return nullptr;
}

const char* text_of(map_type type)
{
    const map_kind* const kind = find_kind(type);
    if (kind != nullptr) return kind->text;
    return type == MT_UNKNOWN ? "MT_UNKNOWN" : nullptr;
}

}  // namespace data_mapper4
