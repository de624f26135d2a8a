// item_table: the items of a table. They are in a store, which copies of the table share, until somebody asks for
// iterators; from then on they are in a std::map of the table's own, because iterators may change it at any time.
//
// Internal. The header is installed because the tables contain one; hosts use the tables' own members.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "data_mapper/item_store.h"
#include "data_mapper/map_error_t.h"
#include "platform/xml_stream_parser.h"

namespace data_mapper4 {

template <class map>
class item_table
{
public:
    item_table() = default;
    item_table(const item_table& other);
    item_table& operator=(const item_table& other);
    ~item_table() = default;

    std::size_t size() const { return m_map ? m_map->size() : m_store.size(); }
    bool has(const ustring8& key) const;
    void clear();

    // Returns the item, or none. If the items are in a map, the item is copied into `one`.
    stored_item find(const ustring8& key, item_store& one) const { return m_map ? copy(key, one) : m_store.find(key); }

    // Returns the store, or null if the items are in a map.
    const item_store* shared_store() const { return m_map ? nullptr : &m_store; }

    // Returns a copy of the items: in a store, which is shared if it can be, or in a map.
    item_store store() const;
    map read() const;

    // The items, for iterators.
    map& expose();

    // Reads the items of a map off the parser's queue and adds them. Returns the result, and also sets `error` to it.
    map_error_t load(map_type kind, NUVEK_2_18::parser::xml_stream_parser& parser, std::vector<ustring8>& schema,
                     map_error_t& error);

    bool is_shared_with(const item_table& other) const { return m_store.is_shared_with(other.m_store); }

private:
    stored_item copy(const ustring8& key, item_store& one) const;

    item_store m_store;  // empty if there is a map
    std::unique_ptr<map> m_map;
};

}  // namespace data_mapper4
