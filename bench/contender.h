// The contenders: the library, and its peers, which fill a host's own tables on another parser.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "data_mapper/map_collection.h"
#include "host_tables.h"

namespace bench {

// A parser with the loop that fills tables on it, in a source of its own.
struct peer
{
    const char* name;
    std::string version;
    // Gives the elements of one file to the filler. False when the file cannot be read, or the filler refuses one.
    bool (*read)(const std::string& path, table_filler& filler);
    // Does no more than to parse one file; null where that is not measured.
    bool (*parse)(const std::string& path);
};

extern const peer pugixml;
extern const peer rapidxml;
extern const peer expat;
extern const peer libxml2_sax2;
extern const peer libxml2_reader;
extern const peer tinyxml2;
extern const peer boost_ptree;

const std::vector<peer>& peers();

constexpr const char* library_name = "data_mapper4";

// Loads a master file with all that it includes. False when anything goes wrong.
bool load(const peer& by, const std::string& path, host_tables& tables);
bool load(const std::string& path, data_mapper4::map_collection& maps);

// The path as the library takes it, with a backslash before the file's name: includes are relative to what it ends.
std::wstring library_path(const std::string& path);

// What the first difference is between the library's tables and a host's; empty when they are equal.
std::string difference(data_mapper4::map_collection& maps, const host_tables& tables);

// A whole file in memory with a zero behind it, which size does not count. No memory when it cannot be read.
struct file_text
{
    std::unique_ptr<char[]> bytes;
    std::size_t size = 0;
};
file_text read_file(const std::string& path);

}  // namespace bench
