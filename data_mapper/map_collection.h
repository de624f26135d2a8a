// map_collection: loads a master file of maps and everything it includes, and answers lookups by map and item name.
//
//     data_mapper4::map_collection maps;
//     data_mapper4::map_error_t result = maps.load(L"maps\\world.xml");
//     if (result.type() != data_mapper4::map_error_t::no_error) {
//         std::cerr << maps.map_error_as_string(result) << ", line " << result.line() << '\n';
//     }
//     data_mapper4::ustring8 name;
//     if (maps.get_arg("territory_names_en", "CH", name)) std::cout << name << '\n';
//
// Files. The root of a file is <maps>, without attributes. It contains, in any order, map elements (<map>,
// <vector_map>, <collection_map>, <vector_collection_map>), each with exactly one attribute "name", and
// <include file="PATH"/>. A map element without child elements is skipped, not loaded. The headers of the table classes
// describe the content of each kind of map.
//
// Ownership: a collection owns everything it holds. Loading adds to it; only assignment removes anything. Copies behave
// as if independent, but share the items of their tables until one of them changes: the cost of a copy is that of the
// maps' names and attribute names, whatever the number of items.
//
// Threads: no locks, no threads, no global state. Any number of threads may query one collection at once; the queries
// are not const, but they change nothing. Loading into a collection, assigning to it and destroying it must not overlap
// with any other use of it; copying it and assigning from it only read it. Two collections never disturb each other,
// even if one is a copy of the other.
//
// Bad input is a result, never an exception; a lookup that finds nothing returns false. Running out of memory is
// std::bad_alloc or std::length_error; what was loaded before it stays.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "data_mapper/collection_map_t.h"
#include "data_mapper/map_error_t.h"
#include "data_mapper/map_t.h"
#include "data_mapper/map_view.h"
#include "data_mapper/vector_collection_map_t.h"
#include "data_mapper/vector_map_t.h"

namespace data_mapper4 {

class load_listener;

class DATA_MAPPER4_API map_collection
{
public:
    // Nothing loaded, no_error with line 0, no paths.
    map_collection();
    map_collection(const map_collection& other);
    ~map_collection();

    // Assigns member by member, in the order of declaration. If memory runs out, the members before the one that failed
    // are the other collection's and those after it are unchanged; the one that failed is unchanged if it is a string,
    // and empty if it is a map. Lookups then return false for a name whose table is missing.
    map_collection& operator=(const map_collection& other);

    // Loads a file and everything it includes, and adds their maps to those already loaded. A fault ends the file that
    // it is in, but not the files that include that one. What was loaded before it stays; a map with a faulty item or
    // arg is not loaded. An element that does not belong in a map ends the map, which is loaded with what precedes that
    // element, and then ends the file.
    //
    // path: wide characters, each one UTF-16 unit, up to the first zero. Where wchar_t is wider, write a character
    // beyond U+FFFF as its two surrogates; as a single wchar_t it would be cut to 16 bits. A path is opened as written
    // if it names a regular file; otherwise with every backslash replaced by the system's separator or, on Windows, with
    // every slash replaced by a backslash: write L"maps\\world.xml" everywhere. A path of more than 32,767 wide
    // characters names no file.
    //
    // Includes: an include's path is the base directory followed by the value of "file". The base directory is taken
    // from the first path with a backslash that the collection is told to load or include, whether or not that file
    // exists: everything up to and including the last backslash. It then stays until the collection is assigned to. A
    // slash does not count. Until the base directory is set, includes are relative to the current directory.
    //
    // Result: no_error, or what ended the master file: file_not_found, invalid_format, duplicate_map, or the result of
    // a table's load. The end of a file sets it to no_error, so a missing or faulty include does not show; ask
    // is_loaded. But if a master file is cut off right after an include, with its root still open, the result is that
    // of the include. A file that is included while it is still being read, with no map loaded in between, is not
    // entered again: the result of that include is invalid_format.
    //
    // Line: the line of the most recent table load, in this file or one that it included, or 0 if a file has been
    // opened since. The table classes' headers say which line that is; a collection map's is 0. It is not the line of a
    // misplaced element.
    //
    // Cost: linear in the files, each counted as often as it is read, and n log n in maps. A file is read
    // once for every path of includes that leads to it; SECURITY.md says how fast that can grow. Deep includes take
    // memory, not stack.
    map_error_t load(const std::wstring& path);

    // Returns the name of the code, such as "no_error", without the line; "unknown_map_error" for a value that is not a
    // code.
    ustring8 map_error_as_string(map_error_t error);

    // Returns the kind of the map, or MT_UNKNOWN if it is not loaded. Cost, as of all lookups: logarithmic in the
    // number of maps.
    map_type type(const ustring8& map_name);

    // Returns the name of the kind, such as "MT_SIMPLE"; "UNKNOWN" for a value that is not a map_type.
    ustring8 map_type_as_string(map_type type);

    // Returns true if the map is loaded, whatever its kind.
    bool is_loaded(const ustring8& map_name);

    // Returns the names and kinds of the loaded maps. Cost: a copy of them all.
    std::map<ustring8, map_type> maps();

    // The same without the copy, in the order of ustring8. The kinds must not be changed. Loads keep iterators valid;
    // assignment invalidates them.
    std::map<ustring8, map_type>::iterator begin();
    std::map<ustring8, map_type>::iterator end();

    // Returns the names of the map's items, in the order of ustring8; none if the map is not loaded. Cost: a copy of
    // them all, and n log n in them if the document has them in another order.
    std::vector<ustring8> items(const ustring8& map_name);

    // Returns the attribute names of a collection map or vector collection map, in the order of its first item or arg;
    // none if the map is of another kind or not loaded. Cost: a copy of them all.
    std::vector<ustring8> keys(const ustring8& map_name);

    // Returns true if the map is loaded and has the item, whatever its kind. Cost: logarithmic in the number of maps.
    bool has_item(const ustring8& map_name, const ustring8& item_name);

    // Returns true if the map is a collection map or vector collection map, has at least one item, and has the key
    // among its attribute names. The first of these is "name"; a vector collection map without any arg has none. Cost:
    // logarithmic in the number of maps, linear in the attribute names.
    bool has_key(const ustring8& map_name, const ustring8& key);

    // The lookups. Each returns true and sets its output if the map is of the kind given below and has the item. If the
    // map is not loaded or of another kind, returns false and leaves the output unchanged. If only the item is missing,
    // returns false, leaves a text unchanged and empties a container. Cost: logarithmic in the number of maps, whatever
    // the number of items, plus the output; get_attrib is linear in the map's attribute names. The output may be the
    // same string as one of the names.

    // Simple map: the item's text, which may be empty.
    bool get_arg(const ustring8& map_name, const ustring8& item_name, ustring8& value);

    // Vector map: the item's texts in the order of the document; there may be none.
    bool get_args(const ustring8& map_name, const ustring8& item_name, std::vector<ustring8>& values);

    // Collection map: every attribute name of the map with the item's value, which is empty if the item left it out.
    bool get_attribs(const ustring8& map_name, const ustring8& item_name, std::map<ustring8, ustring8>& attribs);

    // Collection map: the item's value of one attribute. Also returns false and leaves `value` unchanged if the map
    // does not have the attribute name.
    bool get_attrib(const ustring8& map_name, const ustring8& item_name, const ustring8& attrib_name, ustring8& value);

    // Vector collection map: the item's attribute sets in the order of the document, each as in get_attribs; there may
    // be none.
    bool get_args_vector(const ustring8& map_name, const ustring8& item_name,
                         std::vector<std::map<ustring8, ustring8>>& args_vector);

    // view returns the map of that name, to be read in place, and views all maps; map_view.h has the rules. There is no
    // view of a map that is not loaded, or whose table's begin() or end() a derived class has called, because its items
    // are then in a std::map. Cost: logarithmic in the number of maps.
    map_view view(const ustring8& map_name) const noexcept;
    map_list views() const noexcept;

protected:
    // Loads one file and everything it includes; the result is in m_error.
    void init(const std::wstring& path);

    // Returns the load's result for a parser's state; the line is 0.
    map_error_t convert_error(xml_stream_parser::error_type error);

    // Return the table of that name. A map of that kind must be loaded (asserted).
    const map_t& simple_map(const ustring8& map_name);
    const collection_map_t& collection_map(const ustring8& map_name);
    const vector_map_t& vector_map(const ustring8& map_name);
    const vector_collection_map_t& vector_collection_map(const ustring8& map_name);

    std::wstring m_file;      // the path of the last file, included ones too: its first 32,767 wide characters
    std::wstring m_base_dir;  // the base directory with its backslash; empty until a path has a backslash
    map_error_t m_error;
    std::map<ustring8, map_type> m_maps;  // the registry: the stores below hold exactly these names, each by its kind
    std::map<ustring8, map_t> m_simple_maps;
    std::map<ustring8, collection_map_t> m_collection_maps;
    std::map<ustring8, vector_map_t> m_vector_maps;
    std::map<ustring8, vector_collection_map_t> m_vector_collection_maps;

private:
    struct stores;
    class file_loader;

    // An assignment ran out of memory: the registry and the stores may come from different collections.
    bool m_is_torn = false;

    // For load reports.
    friend void load_followed(map_collection& maps, const std::wstring& path, load_listener& listener);
    friend class load_recorder;
};

}  // namespace data_mapper4
