// map_collection: loads a master file of maps with all that it includes, and answers lookups by map and item name.
//
//     data_mapper4::map_collection maps;
//     data_mapper4::map_error_t result = maps.load(L"maps\\world.xml");
//     if (result.type() != data_mapper4::map_error_t::no_error) {
//         std::cerr << maps.map_error_as_string(result) << ", line " << result.line() << '\n';
//     }
//     data_mapper4::ustring8 name;
//     if (maps.get_arg("territory_names_en", "CH", name)) std::cout << name << '\n';
//
// Files. The root of a file is <maps>, without attributes. In it stand, in any order, map elements (<map>,
// <vector_map>, <collection_map>, <vector_collection_map>), each with the one attribute "name", and
// <include file="PATH"/>. A map element without child elements is passed over and not loaded. The headers of the table
// classes have the content of each kind of map.
//
// Ownership: a collection owns all that it holds, and grows by loading; only assignment removes anything. Copies are
// independent in everything that can be observed, but their tables share their items until one of them changes: the
// cost of a copy is that of the maps' names and attribute names, whatever the number of items.
//
// Threads: no locks, no threads, no global state. Any number of threads may query one collection at once, although its
// queries are not const: they change nothing. Loading into a collection, assigning to it and its destruction must not
// overlap with any other use of it; copying it and assigning from it only read it. Two collections never disturb each
// other, whether or not one is a copy of the other.
//
// Failures of input are results, never exceptions; a lookup never fails, it answers false. A shortage of memory
// surfaces as std::bad_alloc or std::length_error; what was loaded before it stays.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "data_mapper/collection_map_t.h"
#include "data_mapper/map_error_t.h"
#include "data_mapper/map_t.h"
#include "data_mapper/vector_collection_map_t.h"
#include "data_mapper/vector_map_t.h"

namespace data_mapper4 {

class DATA_MAPPER4_API map_collection
{
public:
    // Nothing loaded, no_error with line 0, no paths.
    map_collection();
    map_collection(const map_collection& other);
    ~map_collection();

    // Member by member, in the order of declaration. When memory runs out on the way, the members before it are the
    // other collection's, the one at hand is empty and those behind it are as they were; lookups then answer false for
    // a name whose table is not there.
    map_collection& operator=(const map_collection& other);

    // Loads a file and all that it includes, and adds its maps to those that are loaded. A fault ends the file that it
    // is found in, not the files that include that one. What was loaded before it stays; a map whose own item or arg is
    // faulty is not loaded. An element that does not belong in a map ends that map, which stays loaded as far as it was
    // read, and then ends the file.
    //
    // path: wide characters, each one unit of UTF-16, up to the first zero. Where wide characters are wider, a
    // character beyond U+FFFF is written as its two surrogates; written as one it would be cut to 16 bits.
    //
    // An include's path is the base directory with the value of "file" behind it. The base directory is everything up
    // to and with the last backslash of the first path that has one, among those that the collection was told to load
    // or include, whether or not there is such a file; it then stays for good. A slash does not count. Until there is
    // one, includes are relative to the current directory. On systems whose separator is the slash, a path that names
    // no file is tried again with slashes for its backslashes: write L"maps\\world.xml" everywhere.
    //
    // Result: no_error, or what ended the master file: file_not_found, invalid_format, duplicate_map, or what the load
    // of a table came to. A file that is read to its end sets it, so a missing or faulty include does not show;
    // is_loaded tells. A file that is included while it is still being read, with no map loaded in between, comes to
    // invalid_format instead of being entered again.
    //
    // Line: what the last table load before the place reported, in this file or one that it included (the table
    // classes' headers say which line that is; a collection map's is 0), or 0 when a file was begun since then. It is
    // not the line of a misplaced element.
    //
    // Cost: linear in the files, each counted as often as it is included, and n log n in items and maps. A file is read
    // once for every way in which includes lead to it, so files that include each other many times over multiply. How
    // deep includes go costs memory, not stack.
    map_error_t load(const std::wstring& path);

    // The kind of the map, MT_UNKNOWN when it is not loaded. Cost, as of all lookups: logarithmic in the number of
    // maps.
    map_type type(const ustring8& map_name);

    // True when the map is loaded, whatever its kind.
    bool is_loaded(const ustring8& map_name);

    // The loaded maps' names and kinds. Cost: a copy of them all.
    std::map<ustring8, map_type> maps();

    // The same, in place, in the order of ustring8. The kinds must not be changed. Iterators outlive loads, but not an
    // assignment.
    std::map<ustring8, map_type>::iterator begin();
    std::map<ustring8, map_type>::iterator end();

    // The names of the map's items, in the order of ustring8; none if the map is not loaded. Cost: a copy of them all.
    std::vector<ustring8> items(const ustring8& map_name);

    // The attribute names of a collection map or a vector collection map, in the order of its first item or arg; none if
    // the map is of another kind or not loaded. Cost: a copy of them all.
    std::vector<ustring8> keys(const ustring8& map_name);

    // True when the map is loaded and has the item, whatever its kind. Cost: logarithmic in the number of maps and of
    // items, and a copy of the map's id and attribute names.
    bool has_item(const ustring8& map_name, const ustring8& item_name);

    // True when the map is a collection map or a vector collection map, has an item, and its attribute names have the
    // key. "name" is the first of them; a vector collection map without a single arg has none. Cost: logarithmic in the
    // number of maps, linear in the attribute names.
    bool has_key(const ustring8& map_name, const ustring8& key);

    // The lookups. Each is true when the map is of the kind named and has the item. When the map is not loaded or of
    // another kind, the answer is false and the output stays as it was. When only the item is missing, the answer is
    // false, a text stays as it was and a container is emptied. Cost: logarithmic in the number of maps and of items,
    // and the output; get_attrib is linear in the map's attribute names. An output may be one of the names' own
    // strings.

    // Simple map: the item's text, perhaps empty.
    bool get_arg(const ustring8& map_name, const ustring8& item_name, ustring8& value);

    // Vector map: the item's texts in the order of the document, perhaps none.
    bool get_args(const ustring8& map_name, const ustring8& item_name, std::vector<ustring8>& values);

    // Collection map: every attribute name of the map with the item's value, empty where the item has none.
    bool get_attribs(const ustring8& map_name, const ustring8& item_name, std::map<ustring8, ustring8>& attribs);

    // Collection map: the item's value of one attribute. False, value as it was, also for an attribute name that the
    // map does not have.
    bool get_attrib(const ustring8& map_name, const ustring8& item_name, const ustring8& attrib_name, ustring8& value);

    // Vector collection map: the item's attribute sets in the order of the document, perhaps none; each as get_attribs.
    bool get_args_vector(const ustring8& map_name, const ustring8& item_name,
                         std::vector<std::map<ustring8, ustring8>>& args_vector);

    // The name of the code, such as "no_error"; "unknown_map_error" for a value that is none. The line is not part of
    // it.
    ustring8 map_error_as_string(map_error_t error);

    // The name of the kind, such as "MT_SIMPLE"; "UNKNOWN" for a value that is none.
    ustring8 map_type_as_string(map_type type);

protected:
    // Loads one file and all that it includes; the outcome is m_error.
    void init(const std::wstring& path);

    // What a parser's state means for a load; the line is 0.
    map_error_t convert_error(xml_stream_parser::error_type error);

    // The table of that name, which must be loaded with that kind (asserted).
    const map_t& simple_map(const ustring8& map_name);
    const collection_map_t& collection_map(const ustring8& map_name);
    const vector_map_t& vector_map(const ustring8& map_name);
    const vector_collection_map_t& vector_collection_map(const ustring8& map_name);

    std::wstring m_file;      // the path of the last file that a load began with, included files too
    std::wstring m_base_dir;  // what include paths begin with, its backslash included; empty until a path has one
    map_error_t m_error;
    std::map<ustring8, map_type> m_maps;  // every name here is in the one store of its kind, and no other name is
    std::map<ustring8, map_t> m_simple_maps;
    std::map<ustring8, collection_map_t> m_collection_maps;
    std::map<ustring8, vector_map_t> m_vector_maps;
    std::map<ustring8, vector_collection_map_t> m_vector_collection_maps;

private:
    struct stores;
    class file_loader;
};

}  // namespace data_mapper4
