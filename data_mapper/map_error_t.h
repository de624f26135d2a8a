// map_error_t: the result of a load, a code and a line; and map_type: the kinds of map.
#pragma once

#include <cstdint>

#include "platform/ustring.h"

namespace data_mapper4 {

using NUVEK_2_18::strings::ustring8;

// The kinds of map. map_collection::map_type_as_string returns an enumerator's name.
enum map_type : std::int32_t
{
    MT_SIMPLE = 0,             // element "map": a name and its text; map_t
    MT_COLLECTION = 1,         // element "collection_map": a name and its attributes; collection_map_t
    MT_VECTOR = 2,             // element "vector_map": a name and its list of texts; vector_map_t
    MT_VECTOR_COLLECTION = 3,  // element "vector_collection_map": a name and its list of attribute sets;
                               // vector_collection_map_t
    MT_UNKNOWN = 4,            // not a kind: the result for a map that is not loaded
};

// The result of a load: a code, and the line of input that it refers to. A value; none of its members fails or throws.
class DATA_MAPPER4_API map_error_t
{
public:
    // map_collection::map_error_as_string returns an enumerator's name.
    enum result_type : std::int32_t
    {
        no_error = 0,
        file_not_found = 1,    // a path names no regular file, or the file cannot be opened
        invalid_format = 2,    // not well-formed XML, or not in the format of a map file
        collection_error = 3,  // an item's attributes do not fit the attribute names of its map
        duplicate_item = 4,    // an item name occurs twice in one map
        duplicate_attrib = 5,  // an attribute name occurs twice among those of a map
        duplicate_map = 6,     // a map name is already loaded
        memory_error = 7,      // an item or map was not inserted; running out of memory is a standard exception instead
    };

    // no_error, line 0.
    map_error_t() = default;
    ~map_error_t() = default;
    map_error_t& operator=(const map_error_t& other) = default;

    result_type type() const;
    void type(result_type type);  // leaves the line as it is

    // The line, counted from 1; 0 if there is none. Not const, unlike type(): the exported signature is fixed.
    unsigned long line();
    void line(unsigned long line);  // leaves the code as it is

protected:
    result_type m_type = no_error;
    unsigned long m_line = 0;
};

}  // namespace data_mapper4
