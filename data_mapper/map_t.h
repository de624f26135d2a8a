// map_t: the simple map, one text for each item name.
//
// Hosts usually use map_t through map_collection (map_collection.h), which loads it and answers lookups. To use it on
// its own, derive a class that exposes the protected lookups:
//
//     struct colours : data_mapper4::map_t
//     {
//         using map_t::get_arg;
//     };
//     colours map;
//     if (map.load("colours", parser).type() == data_mapper4::map_error_t::no_error) map.get_arg("red", value);
//
// The rules of all four table classes:
//
// Ownership: a table owns its items. Copies behave as if independent, but they share their items until one of them
// changes, so a copy costs the same whatever the number of items; the first change copies them.
//
// Iterators: the first begin() or end() copies the items into a std::map of the table's own, which takes several times
// the memory and n log n time. From then on the table works on that map, so that lookups, copies and later loads see
// what is changed through iterators; every copy of the table copies its items. Assignment and clear end that, and
// invalidate the table's iterators, end() included; a load keeps them valid.
//
// Threads: no locks. Several threads may call const members of one table and copy it at once; anything else must not
// overlap with another use of the same table. Two tables never disturb each other, whether or not they share items.
//
// Names are compared byte by byte: no case folding, no normalization, no trimming. Iterators go in the order of ustring8.
//
// Cost: items are found by a hash of their names, in constant time. If names were made to collide, a table notices and
// searches in logarithmic time instead; what is linear in the items below is then n log n. An attribute that is left out
// takes no memory.
//
// Bad input is a result, never an exception. Running out of memory is std::bad_alloc or std::length_error. A load throws it
// at once: the table then holds what it held before and the map's first items, perhaps none, each of them whole. An
// assignment goes member by member, in the order of declaration: the members before the one that failed are then the other
// table's and those after it are unchanged; the one that failed is unchanged, except that a schema may be a mixture of the
// two.
#pragma once

#include <map>

#include "data_mapper/item_table.h"
#include "data_mapper/map_error_t.h"
#include "platform/xml_stream_parser.h"

namespace data_mapper4 {

using NUVEK_2_18::parser::xml_stream_parser;

class DATA_MAPPER4_API map_t
{
    friend class map_collection;

public:
    // Empty, no_error with line 0, no id.
    map_t();
    map_t(const map_t& other);
    ~map_t();
    map_t& operator=(const map_t& other);

    // Reads the map's content off the parser's queue: any number of
    //
    //     <item name="KEY"/>  which may be followed by  <arg name="TEXT"/>
    //
    // KEY is not empty and new to the table; TEXT may be empty, and an item without an arg has the empty text. Neither
    // element has other attributes or text, and an item is not the last node of the queue. The first node that does
    // not fit stays at the front. The items are added to those that the table holds; the first fault ends the load, and
    // what was added before it stays.
    //
    // Results: no_error; invalid_format; duplicate_item. The line is that of the last item taken, and unchanged if none
    // was taken. Cost: linear in the items.
    map_error_t load(const ustring8& map_name, xml_stream_parser& parser);

    // Removes all items; keeps the id and the result of the last load.
    void clear();

    // The map's name, as given to the last load.
    ustring8 id();

protected:
    using items = std::map<ustring8, const ustring8>;

    // Returns true if the table has the item.
    bool has_item(const ustring8& item_name) const;

    // Returns true and sets `value` to the item's text, which may be empty, if the table has the item. Otherwise
    // returns false and leaves `value` unchanged.
    bool get_arg(const ustring8& item_name, ustring8& value) const;

    // The items in order, and whether there are none.
    items::iterator begin();
    items::iterator end();
    bool empty();

    map_error_t m_error;  // the result of the last load
    ustring8 m_id;
    item_table<items> m_items;
};

}  // namespace data_mapper4
