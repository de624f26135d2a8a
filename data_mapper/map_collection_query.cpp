#include "data_mapper/map_collection.h"

#include <algorithm>
#include <cassert>

#include "data_mapper/map_stores.h"

namespace data_mapper4 {

namespace {

template <class table>
const table& table_in(const std::map<ustring8, table>& store, const ustring8& map_name)
{
    const auto found = store.find(map_name);
    assert(found != store.end());
    return found->second;
}

}  // namespace

map_type map_collection::type(const ustring8& map_name)
{
    return stores::type_of(*this, map_name);
}

bool map_collection::is_loaded(const ustring8& map_name)
{
    return m_maps.count(map_name) != 0;
}

std::map<ustring8, map_type> map_collection::maps()
{
    return m_maps;
}

std::map<ustring8, map_type>::iterator map_collection::begin()
{
    return m_maps.begin();
}

std::map<ustring8, map_type>::iterator map_collection::end()
{
    return m_maps.end();
}

std::vector<ustring8> map_collection::items(const ustring8& map_name)
{
    std::vector<ustring8> names;
    stores::visit_table(*this, map_name, [&](const auto& map) {
        const item_store all = map.m_items.store();
        names.reserve(all.size());
        for (const stored_item& item : all.sorted()) names.emplace_back(item.key());
        return true;
    });
    return names;
}

std::vector<ustring8> map_collection::keys(const ustring8& map_name)
{
    return stores::visit_table(*this, map_name, [](const auto& map) {
        const std::vector<ustring8>* const names = stores::names_of(map);
        return names == nullptr ? std::vector<ustring8>() : *names;
    });
}

bool map_collection::has_item(const ustring8& map_name, const ustring8& item_name)
{
    return stores::visit_table(*this, map_name, [&](const auto& map) { return map.has_item(item_name); });
}

bool map_collection::has_key(const ustring8& map_name, const ustring8& key)
{
    return stores::visit_table(*this, map_name, [&](const auto& map) {
        const std::vector<ustring8>* const names = stores::names_of(map);
        return names != nullptr && map.m_items.size() != 0 &&
               std::find(names->begin(), names->end(), key) != names->end();
    });
}

bool map_collection::get_arg(const ustring8& map_name, const ustring8& item_name, ustring8& value)
{
    const map_t* const map = stores::find(*this, MT_SIMPLE, m_simple_maps, map_name);
    return map != nullptr && map->get_arg(item_name, value);
}

bool map_collection::get_args(const ustring8& map_name, const ustring8& item_name, std::vector<ustring8>& values)
{
    const vector_map_t* const map = stores::find(*this, MT_VECTOR, m_vector_maps, map_name);
    return map != nullptr && map->get_args(item_name, values);
}

bool map_collection::get_attribs(const ustring8& map_name, const ustring8& item_name,
                                 std::map<ustring8, ustring8>& attribs)
{
    const collection_map_t* const map = stores::find(*this, MT_COLLECTION, m_collection_maps, map_name);
    return map != nullptr && map->get_attribs(item_name, attribs);
}

bool map_collection::get_attrib(const ustring8& map_name, const ustring8& item_name, const ustring8& attrib_name,
                                ustring8& value)
{
    const collection_map_t* const map = stores::find(*this, MT_COLLECTION, m_collection_maps, map_name);
    return map != nullptr && map->get_attrib(item_name, attrib_name, value);
}

bool map_collection::get_args_vector(const ustring8& map_name, const ustring8& item_name,
                                     std::vector<std::map<ustring8, ustring8>>& args_vector)
{
    const auto* const map = stores::find(*this, MT_VECTOR_COLLECTION, m_vector_collection_maps, map_name);
    return map != nullptr && map->get_args_vector(item_name, args_vector);
}

const map_t& map_collection::simple_map(const ustring8& map_name)
{
    return table_in(m_simple_maps, map_name);
}

const collection_map_t& map_collection::collection_map(const ustring8& map_name)
{
    return table_in(m_collection_maps, map_name);
}

const vector_map_t& map_collection::vector_map(const ustring8& map_name)
{
    return table_in(m_vector_maps, map_name);
}

const vector_collection_map_t& map_collection::vector_collection_map(const ustring8& map_name)
{
    return table_in(m_vector_collection_maps, map_name);
}

}  // namespace data_mapper4
