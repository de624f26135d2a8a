#include "data_mapper/map_kind.h"

#include <algorithm>
#include <iterator>

namespace data_mapper4 {

namespace {

// The store of a collection as a type, from the pointer to the member.
template <class collection, class store>
store store_of(store collection::*);

}  // namespace

template <auto store, map_type type>
bool map_collection::map_kind::load_table(map_collection& maps, const ustring8& map_name, xml_stream_parser& parser)
{
    using store_type = decltype(store_of(store));
    typename store_type::mapped_type loaded;
    maps.m_error = loaded.load(map_name, parser);
    if (maps.m_error.type() != map_error_t::no_error) return false;
    // The store's entry is made before the registry's and moved in behind it: should memory run out on the way, the
    // registry still names only what is stored.
    store_type entry;
    entry.emplace(map_name, loaded);
    const bool is_registered = maps.m_maps.emplace(map_name, type).second;
    if (is_registered) (maps.*store).merge(entry);
    if (is_registered && entry.empty()) return true;
    maps.m_error.type(map_error_t::memory_error);
    return false;
}

// Answered from a copy of the table, which shares its items.
template <auto store>
bool map_collection::map_kind::has_item_in_copy(const map_collection& maps, const ustring8& map_name,
                                                const ustring8& item_name)
{
    const auto found = (maps.*store).find(map_name);
    if (found == (maps.*store).end()) return false;
    auto copy = found->second;
    return !copy.empty() && copy.has_item(item_name);
}

template <auto store>
bool map_collection::map_kind::has_key_in_copy(const map_collection& maps, const ustring8& map_name,
                                               const ustring8& key)
{
    const auto found = (maps.*store).find(map_name);
    if (found == (maps.*store).end()) return false;
    auto copy = found->second;
    const auto& names = copy.m_attrib_names;
    return !copy.empty() && std::find(names.begin(), names.end(), key) != names.end();
}

bool map_collection::map_kind::has_no_key(const map_collection& /*maps*/, const ustring8& /*map_name*/,
                                          const ustring8& /*key*/)
{
    return false;
}

const map_collection::map_kind map_collection::map_kind::rows[4] = {
    {"map", MT_SIMPLE, load_table<&map_collection::m_simple_maps, MT_SIMPLE>,
     has_item_in_copy<&map_collection::m_simple_maps>, has_no_key},
    {"collection_map", MT_COLLECTION, load_table<&map_collection::m_collection_maps, MT_COLLECTION>,
     has_item_in_copy<&map_collection::m_collection_maps>, has_key_in_copy<&map_collection::m_collection_maps>},
    {"vector_map", MT_VECTOR, load_table<&map_collection::m_vector_maps, MT_VECTOR>,
     has_item_in_copy<&map_collection::m_vector_maps>, has_no_key},
    {"vector_collection_map", MT_VECTOR_COLLECTION,
     load_table<&map_collection::m_vector_collection_maps, MT_VECTOR_COLLECTION>,
     has_item_in_copy<&map_collection::m_vector_collection_maps>,
     has_key_in_copy<&map_collection::m_vector_collection_maps>},
};

const map_collection::map_kind* map_collection::map_kind::of_tag(std::string_view tag)
{
    const auto* const found =
        std::find_if(std::begin(rows), std::end(rows), [=](const map_kind& kind) { return kind.tag == tag; });
    return found == std::end(rows) ? nullptr : found;
}

const map_collection::map_kind* map_collection::map_kind::of_type(map_type type)
{
    const auto* const found =
        std::find_if(std::begin(rows), std::end(rows), [=](const map_kind& kind) { return kind.type == type; });
    return found == std::end(rows) ? nullptr : found;
}

}  // namespace data_mapper4
