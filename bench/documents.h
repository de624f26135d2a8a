// The files that the benchmarks read: map files of all kinds, as people and tools write them, the same in every run.
// They are written on first use, into a directory of their own in the one for temporary files.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "data_mapper/map_error_t.h"
#include "shapes.h"

namespace bench {

// The tags of the kinds of map, by map_type.
constexpr const char* map_tags[] = {"map", "collection_map", "vector_map", "vector_collection_map"};

// What a load reads: a file of maps of all four kinds, each about a quarter of the size, or the example maps.
struct cell
{
    std::string path() const;
    std::size_t size() const;  // of all its files together, in bytes

    std::string name;
    std::size_t kibibytes = 0;  // 0 for the example maps
    bool is_shuffled = false;   // whether the items are in no order
    bool is_dotted = false;     // keys such as "dialog.42.title", values of one to three words, more references
};

const std::vector<cell>& load_cells();

// The path of one of the example files.
std::string example_document(const std::string& name);

// The path of a file of that name. It is written unless this process has done so before: an existing file may be from
// an older version.
std::string written_once(const std::string& name, const std::function<shape()>& make_content);

// The path of a file with one map, which is called "table" and has the items 0 to items - 1, shuffled.
std::string table_document(data_mapper4::map_type type, std::size_t items);

// The name of an item, 4 to 24 bytes and different for every number below a million; and a name of the same form that
// is in no document.
std::string item_name(std::size_t number);
std::string missing_name(std::size_t number);

}  // namespace bench
