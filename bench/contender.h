// The contenders: the library, and its peers, which fill a host's own tables with another parser.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "data_mapper/map_collection.h"
#include "host_tables.h"

namespace bench {

// A parser with the loop that fills tables from it.
struct peer
{
    const char* name;
    std::string version;
    // Passes the elements of one file to the filler; only parses the file if that is null. Returns false if the file
    // cannot be read.
    bool (*read)(const std::string& path, table_filler* filler);
    bool is_parser;  // whether the parser is also measured by itself
};

extern const peer pugixml, rapidxml, expat, libxml2_sax2, libxml2_reader, tinyxml2, boost_ptree;

const std::vector<peer>& peers();

constexpr const char* library_name = "data_mapper4";

// Loads a master file and everything it includes. Returns false if anything goes wrong.
bool load(const peer& by, const std::string& path, host_tables& tables);
bool load(const std::string& path, data_mapper4::map_collection& maps);

// The path for the library, with a backslash before the file's name, which makes the base directory end there.
std::wstring library_path(const std::string& path);

// Whether the library's tables hold the same as the host's.
bool is_equal(data_mapper4::map_collection& maps, const host_tables& tables);

const data_mapper4::map_t& simple_map(const data_mapper4::map_collection& maps, const std::string& name);

// A whole file in memory, followed by a zero that is not part of the size. Null if it cannot be read.
struct file_text
{
    std::unique_ptr<char[]> bytes;
    std::size_t size = 0;
};
file_text read_file(const std::string& path);

// Not a contender, but a lower limit for one: returns a function that parses the document with the library, and fills
// tables in order from others that were filled before.
std::function<bool(host_tables&)> floor_of(const std::string& path);

// The rows that are in a source of their own.
void register_lookups();
void register_copies();
void register_tables();

}  // namespace bench
