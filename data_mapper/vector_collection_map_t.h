// vector_collection_map_t: the vector collection map, a list of attribute sets for each item name. map_t.h has the
// rules of all table classes.
//
// The first arg of the map fixes the attribute names that all its args may use, the schema; every arg is a row of
// values in the schema's order, the empty string where the arg leaves an attribute out.
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

    // Reads the map's content off the parser's queue: a run of
    //
    //     <item name="KEY"/>  and behind it any number of  <arg name="SET" first="..." second="..."/>
    //
    // The rules of the items are those of map_t::load. In an arg "name" comes first, SET is not empty, and there is no
    // text. The names of the load's first sound arg are appended to the schema; later args may use those, in any order,
    // and leave any out.
    //
    // A fault of an item ends the load. A faulty arg drops its item and the load goes on with the node behind it: if
    // that is another arg, or not an item, the load ends with the fault. Otherwise the next arg that is sound sets the
    // result back to no_error, and the fault is forgotten; an item without args leaves it as it is and is dropped too.
    //
    // Results: no_error; invalid_format; duplicate_item; duplicate_attrib, when the schema has a name twice; and
    // collection_error, when an arg does not fit the schema. The line is that of the node that ended the content; where
    // the queue ended, that of the last item or badly formed arg, and 0 behind any other arg; it stays as it was when
    // the queue was empty from the start. Neither load nor clear empties the schema, and every schema begins with
    // "name", so in a second load every sound arg appends its names and meets duplicate_attrib: a table is for one
    // load.
    //
    // Cost: n log n in the args' attributes; a row costs its attributes and the whole schema.
    map_error_t load(const ustring8& map_name, xml_stream_parser& parser);

    // Removes all items; keeps the id, the schema and the result of the last load. Cost: linear in the items, constant
    // while a copy shares them.
    void clear();

    // The map's name, as given to the last load.
    ustring8 id();

protected:
    using items = std::map<ustring8, std::vector<std::vector<ustring8>>>;

    // True when the table has the item, also when it has no args. Cost: logarithmic.
    bool has_item(const ustring8& item_name) const;

    // True when the table has the item; args_vector then holds a map for each arg, in the order of the document: every
    // name of the schema, "name" among them, with the arg's value, the empty string for one that the arg left out or
    // whose row was stored before the schema had the name. Otherwise args_vector is emptied. Cost: logarithmic, and for
    // each arg n log n in the schema.
    bool get_args_vector(const ustring8& item_name, std::vector<std::map<ustring8, ustring8>>& args_vector) const;

    // The items in order, and whether there are none. begin and end copy the items first if a copy shares them.
    items::iterator begin();
    items::iterator end();
    bool empty();

    map_error_t m_error;  // the outcome of the last load
    ustring8 m_id;
    std::vector<ustring8> m_attrib_names;  // the schema; "name" comes first
    copy_on_write<items> m_items;          // rows in the schema's order, one an arg
};

}  // namespace data_mapper4
