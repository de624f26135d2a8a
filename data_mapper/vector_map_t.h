// vector_map_t: the vector map, a list of texts for each item name. map_t.h has the rules of all table classes.
#pragma once

#include <map>
#include <vector>

#include "data_mapper/map_t.h"

namespace data_mapper4 {

class DATA_MAPPER4_API vector_map_t
{
    friend class map_collection;

public:
    // Empty, no_error with line 0, no id.
    vector_map_t();
    vector_map_t(const vector_map_t& other);
    ~vector_map_t();
    vector_map_t& operator=(const vector_map_t& other);

    // Reads the map's content off the parser's queue: any number of
    //
    //     <item name="KEY"/>  each followed by any number of  <arg name="TEXT"/>
    //
    // The rules are those of map_t::load, except that TEXT is not empty and that a faulty arg does not end the load:
    // its item keeps the texts before it, the result becomes invalid_format, and loading goes on if an item follows. A
    // later faulty item ends the load with its own code. If another arg follows the faulty one, the load ends and that
    // arg stays at the front.
    //
    // Results: no_error; invalid_format; duplicate_item. The line is that of the last item or arg taken, and unchanged
    // if none was taken. Cost: linear in the items.
    map_error_t load(const ustring8& map_name, xml_stream_parser& parser);

    // Removes all items; keeps the id and the result of the last load.
    void clear();

    // The map's name, as given to the last load.
    ustring8 id();

protected:
    using items = std::map<ustring8, std::vector<ustring8>>;

    // Returns true if the table has the item.
    bool has_item(const ustring8& item_name) const;

    // Returns true and sets `values` to the item's texts, in the order of the document, if the table has the item;
    // there may be none. Otherwise returns false and empties `values`.
    bool get_args(const ustring8& item_name, std::vector<ustring8>& values) const;

    // The items in order, and whether there are none.
    items::iterator begin();
    items::iterator end();
    bool empty();

    map_error_t m_error;  // the result of the last load
    ustring8 m_id;
    item_table<items> m_items;
};

}  // namespace data_mapper4
