// collection_map_t: the collection map, a set of named attributes for each item name. map_t.h has the rules of all
// table classes.
//
// The first item fixes the attribute names that the map may use, its schema. Every item is stored as a row of values in
// the schema's order; a value that the item leaves out is the empty string.
#pragma once

#include <map>
#include <vector>

#include "data_mapper/map_t.h"

namespace data_mapper4 {

class DATA_MAPPER4_API collection_map_t
{
    friend class map_collection;

public:
    // Empty, no_error with line 0, no id.
    collection_map_t();
    collection_map_t(const collection_map_t& other);
    ~collection_map_t();
    collection_map_t& operator=(const collection_map_t& other);

    // Reads the map's content off the parser's queue: any number of
    //
    //     <item name="KEY" first="..." second="..."/>
    //
    // "name" comes first; KEY is not empty and new to the table; an item has no text. The names of the load's first
    // item are appended to the schema; later items may use them in any order and leave any out. The first node that is
    // not an item stays at the front. The first fault ends the load, and what was added before it stays.
    //
    // Results: no_error; invalid_format and duplicate_item, with the item's line; duplicate_attrib if the schema has a
    // name twice, and collection_error if an item does not fit the schema, both with line 0. The line of a success is
    // 0, or unchanged if there was no item. Neither load nor clear empties the schema, and every schema begins with
    // "name", so a second load fails with duplicate_attrib at its first sound item: a table is for one load.
    //
    // Cost: n log n in the items' attributes, whatever the size of the schema.
    map_error_t load(const ustring8& map_name, xml_stream_parser& parser);

    // Removes all items; keeps the id, the schema and the result of the last load.
    void clear();

    // The map's name, as given to the last load.
    ustring8 id();

protected:
    using items = std::map<ustring8, std::vector<ustring8>>;

    // Returns true if the table has the item.
    bool has_item(const ustring8& item_name) const;

    // Returns true and sets `attribs` to every name of the schema, "name" included, with the item's value, if the table
    // has the item. The value is the empty string if the item left it out or was stored before the schema had the name.
    // Otherwise returns false and empties `attribs`. Cost: n log n in the schema.
    bool get_attribs(const ustring8& item_name, std::map<ustring8, ustring8>& attribs) const;

    // Returns true and sets `value` to the item's value, empty as above, if the table has the item and the schema has
    // the attribute. Otherwise returns false and leaves `value` unchanged. Cost: linear in the schema.
    bool get_attrib(const ustring8& item_name, const ustring8& attrib_name, ustring8& value) const;

    // The items in order, and whether there are none.
    items::iterator begin();
    items::iterator end();
    bool empty();

    map_error_t m_error;  // the result of the last load
    ustring8 m_id;
    std::vector<ustring8> m_attrib_names;  // the schema; "name" comes first
    item_table<items> m_items;             // rows in the schema's order
};

}  // namespace data_mapper4
