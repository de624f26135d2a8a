// Internal: the stores of a collection, one for each kind of map.
#pragma once

#include <cstddef>
#include <vector>

#include "data_mapper/map_collection.h"

// Keeps a class that is nested in an exported one from being exported too.
#if defined(_WIN32)
#define DATA_MAPPER4_HIDDEN
#else
#define DATA_MAPPER4_HIDDEN __attribute__((visibility("hidden")))
#endif

namespace data_mapper4 {

struct DATA_MAPPER4_HIDDEN map_collection::stores
{
    // Returns the kind that the registry has for the name; MT_UNKNOWN if it has none.
    static map_type type_of(const map_collection& maps, const ustring8& map_name)
    {
        const auto found = maps.m_maps.find(map_name);
        return found == maps.m_maps.end() ? MT_UNKNOWN : found->second;
    }

    // Calls `use` with the store for maps of this type and returns its result; a default one for MT_UNKNOWN.
    template <class collection, class function>
    static auto visit(collection& maps, map_type type, function use)
    {
        switch (type) {
            case MT_SIMPLE:
                return use(maps.m_simple_maps);
            case MT_COLLECTION:
                return use(maps.m_collection_maps);
            case MT_VECTOR:
                return use(maps.m_vector_maps);
            case MT_VECTOR_COLLECTION:
                return use(maps.m_vector_collection_maps);
            case MT_UNKNOWN:
                break;
        }
        return decltype(use(maps.m_simple_maps))();
    }

    // Calls `use` with the table of this name and returns its result; a default one if there is no such table. An
    // assignment that ran out of memory may leave a name in the registry whose table is missing.
    template <class collection, class function>
    static auto visit_table(collection& maps, const ustring8& map_name, function use)
    {
        return visit(maps, type_of(maps, map_name), [&](auto& store) {
            const auto found = store.find(map_name);
            return found == store.end() ? decltype(use(found->second))() : use(found->second);
        });
    }

    // Whether the stores have only tables that the registry lists. Unless an assignment was torn, each name in the
    // registry has its table, so comparing the numbers is enough.
    static bool are_registered(const map_collection& maps)
    {
        const std::size_t tables = maps.m_simple_maps.size() + maps.m_collection_maps.size() +
                                   maps.m_vector_maps.size() + maps.m_vector_collection_maps.size();
        return !maps.m_is_torn && maps.m_maps.size() == tables;
    }

    // Returns the table if the map is loaded and of this kind, to which the store belongs; otherwise nullptr. Looks the
    // name up only once, because after a load a store has exactly the registered names of its kind. (Hosts must not
    // change the registry.)
    template <class table>
    static const table* find(const map_collection& maps, map_type kind, const std::map<ustring8, table>& store,
                             const ustring8& map_name)
    {
        if (!are_registered(maps) && type_of(maps, map_name) != kind) return nullptr;
        const auto found = store.find(map_name);
        return found == store.end() ? nullptr : &found->second;
    }

    // Returns the number of items of the map; 0 if it is not loaded.
    static std::size_t item_count(const map_collection& maps, const ustring8& map_name)
    {
        return visit_table(maps, map_name, [](const auto& map) { return map.m_items.size(); });
    }

    static map_type kind_of(const map_t& /*map*/) { return MT_SIMPLE; }
    static map_type kind_of(const collection_map_t& /*map*/) { return MT_COLLECTION; }
    static map_type kind_of(const vector_map_t& /*map*/) { return MT_VECTOR; }
    static map_type kind_of(const vector_collection_map_t& /*map*/) { return MT_VECTOR_COLLECTION; }

    // Returns the attribute names of a table, or nullptr for a kind without attributes.
    template <class table>
    static const std::vector<ustring8>* names_of(const table& /*map*/)
    {
        return nullptr;
    }
    static const std::vector<ustring8>* names_of(const collection_map_t& map) { return &map.m_attrib_names; }
    static const std::vector<ustring8>* names_of(const vector_collection_map_t& map) { return &map.m_attrib_names; }
};

}  // namespace data_mapper4
