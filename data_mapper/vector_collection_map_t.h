// vector_collection_map_t: the vector collection map, a list of attribute sets for each item name. map_t.h has the
// rules of all table classes.
//
// The first arg of the map fixes the attribute names that all its args may use, the schema. Every arg is stored as a
// row of values in the schema's order; a value that the arg leaves out is the empty string.
#pragma once

#include <map>
#include <vector>

#include "data_mapper/map_t.h"

namespace data_mapper4 {

class DATA_MAPPER4_API vector_collection_map_t
{
    friend class map_collection;

public:
    // Empty, no_error with line 0, no id.
    vector_collection_map_t();
    vector_collection_map_t(const vector_collection_map_t& other);
    ~vector_collection_map_t();
    vector_collection_map_t& operator=(const vector_collection_map_t& other);

    // Reads the map's content off the parser's queue: any number of
    //
    //     <item name="KEY"/>  each followed by any number of  <arg name="SET" first="..." second="..."/>
    //
    // The rules for items are those of map_t::load. In an arg, "name" comes first, SET is not empty, and there is no
    // text. The names of the load's first sound arg are appended to the schema; later args may use them in any order
    // and leave any out.
    //
    // A faulty item ends the load. A faulty arg drops its item, and the load goes on if the next node is an item;
    // otherwise it ends with the fault. If it goes on, the next sound arg sets the result back to no_error and the
    // fault is forgotten; an item without args does not change the result, and is dropped too.
    //
    // Results: no_error; invalid_format; duplicate_item; duplicate_attrib if the schema has a name twice; and
    // collection_error if an arg does not fit the schema. The line is that of the node that ended the content. If the
    // queue ended instead, it is that of the last node if that was an item or a malformed arg, and 0 if it was any
    // other arg; it is unchanged if the queue was empty from the start. Neither load nor clear empties the schema, and
    // every schema begins with "name", so in a second load every sound arg appends its names and results in
    // duplicate_attrib: a table is for one load.
    //
    // Cost: n log n in the args' attributes, whatever the size of the schema.
    map_error_t load(const ustring8& map_name, xml_stream_parser& parser);

    // Removes all items; keeps the id, the schema and the result of the last load.
    void clear();

    // The map's name, as given to the last load.
    ustring8 id();

protected:
    using items = std::map<ustring8, std::vector<std::vector<ustring8>>>;

    // Returns true if the table has the item, even if it has no args.
    bool has_item(const ustring8& item_name) const;

    // Returns true and sets `args_vector` to a map for each arg, in the order of the document, if the table has the
    // item. Each map has every name of the schema, "name" included, with the arg's value, which is the empty string if
    // the arg left it out or was stored before the schema had the name. Otherwise returns false and empties
    // `args_vector`. Cost: n log n in the schema for each arg.
    bool get_args_vector(const ustring8& item_name, std::vector<std::map<ustring8, ustring8>>& args_vector) const;

    // The items in order, and whether there are none.
    items::iterator begin();
    items::iterator end();
    bool empty();

    map_error_t m_error;  // the result of the last load
    ustring8 m_id;
    std::vector<ustring8> m_attrib_names;  // the schema; "name" comes first
    item_table<items> m_items;             // a row for each arg, in the schema's order
};

}  // namespace data_mapper4
