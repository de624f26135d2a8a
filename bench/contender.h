// The contenders: the library, and its peers, which fill a host's own tables on another parser.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "data_mapper/map_collection.h"
#include "host_tables.h"

namespace bench {

// A parser with the loop that fills tables on it.
struct peer
{
    const char* name;
    std::string version;
    // Gives the elements of one file to the filler; does no more than to parse where that is null. False when the file
    // cannot be read.
    bool (*read)(const std::string& path, table_filler* filler);
    bool is_parser;  // whether the parser is measured by itself, too
};

extern const peer pugixml, rapidxml, expat, libxml2_sax2, libxml2_reader, tinyxml2, boost_ptree;

const std::vector<peer>& peers();

constexpr const char* library_name = "data_mapper4";

// Loads a master file with all that it includes. False when anything goes wrong.
bool load(const peer& by, const std::string& path, host_tables& tables);
bool load(const std::string& path, data_mapper4::map_collection& maps);

// The path as the library takes it, with a backslash before the file's name: includes are relative to what it ends.
std::wstring library_path(const std::string& path);

// Whether the library's tables hold the same as a host's.
bool is_equal(data_mapper4::map_collection& maps, const host_tables& tables);

const data_mapper4::map_t& simple_map(const data_mapper4::map_collection& maps, const std::string& name);

// A whole file in memory with a zero behind it, which size does not count. No memory when it cannot be read.
struct file_text
{
    std::unique_ptr<char[]> bytes;
    std::size_t size = 0;
};
file_text read_file(const std::string& path);

// Not a contender but the least that one can cost: gives a function that parses the document with the library, and fills
// tables in order from others that were filled before.
std::function<bool(host_tables&)> floor_of(const std::string& path);

// The rows that stand in a source of their own.
void register_lookups();
void register_copies();

}  // namespace bench
