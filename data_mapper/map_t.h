// map_t: the simple map, one text for each item name.
//
// A host meets a map_t through map_collection (map_collection.h), which loads and asks it. Used on its own, by way of a
// derived class that reaches the protected lookups:
//
//     struct colours : data_mapper4::map_t { using map_t::get_arg; };
//     colours map;
//     if (map.load("colours", parser).type() == data_mapper4::map_error_t::no_error) map.get_arg("red", value);
//
// The rules of all four table classes:
//
// Ownership: a table owns its strings. Copies are independent in everything that can be observed, but they share their
// items until one of them changes, so that a copy costs the same whatever the number of items; the copying is done by
// the first change. begin() and end() count as a change, since iterators see and can make changes, and a table on which
// one of them was called is copied item by item until the next assignment to it. Assignment and clear invalidate the
// iterators of the table, those of end() included.
//
// Threads: no locks. Several threads may call const members of one table at once, and copy it; anything else must not
// overlap with another use of the same table. Two tables never disturb each other, whether or not they share items.
//
// Names are compared byte by byte: no case folding, no normalisation, no trimming. Items are in the order of ustring8.
//
// Failures of input are results, never exceptions. A shortage of memory surfaces as std::bad_alloc or
// std::length_error: after a load the table holds what was loaded before it; after an assignment, which goes member by
// member in the order of declaration, the members before it are the other table's, and those behind it as they were.
#pragma once

#include <map>

#include "data_mapper/copy_on_write.h"
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

    // Reads the map's content off the parser's queue: a run of
    //
    //     <item name="KEY"/>  and, if it has a text,  <arg name="TEXT"/>  behind it
    //
    // KEY is not empty and new to the table; TEXT may be empty, and an item without an arg has the empty text. Neither
    // element has other attributes or text of its own, and an item is not the last node of the queue. The first node
    // that does not belong stays in front. Adds to what the table holds; the first fault ends the load, and what was
    // added before it stays.
    //
    // Results: no_error; invalid_format; duplicate_item. The line is that of the last item taken; when none was taken
    // it stays as it was. Cost: n log n in the items.
    map_error_t load(const ustring8& map_name, xml_stream_parser& parser);

    // Removes all items; keeps the id and the result of the last load. Cost: linear in the items, constant while a copy
    // shares them.
    void clear();

    // The map's name, as given to the last load.
    ustring8 id();

protected:
    using items = std::map<ustring8, const ustring8>;

    // True when the table has the item. Cost: logarithmic.
    bool has_item(const ustring8& item_name) const;

    // True when the table has the item; value then holds its text, which may be empty. Otherwise value is left as it
    // was. Cost: logarithmic.
    bool get_arg(const ustring8& item_name, ustring8& value) const;

    // The items in order, and whether there are none. begin and end copy the items first if a copy shares them.
    items::iterator begin();
    items::iterator end();
    bool empty();

    map_error_t m_error;  // the outcome of the last load
    ustring8 m_id;
    copy_on_write<items> m_items;
};

}  // namespace data_mapper4
