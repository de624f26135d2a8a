// The contenders: the library, and its peers, which fill a host's own tables on another parser.
#pragma once

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
bool is_equal(const data_mapper4::map_collection& maps, const host_tables& tables);

const data_mapper4::map_t& simple_map(const data_mapper4::map_collection& maps, const std::string& name);

// A whole file in memory with a zero behind it, which size does not count. No memory when it cannot be read.
struct file_text
{
    std::unique_ptr<char[]> bytes;
    std::size_t size = 0;
};
file_text read_file(const std::string& path);

// Reads with RapidXML, in place: the tables point into the text.
bool read_views(const file_text& text, basic_filler<std::string_view>& filler);

// Not a contender but the least that one can cost: the document parsed by the library, and tables filled in order from
// texts that were found and sorted before.
class floor_load
{
public:
    explicit floor_load(const std::string& path);
    bool load(host_tables& tables) const;

private:
    struct sorted_map
    {
        std::string_view name;
        std::vector<std::string_view> schema;
        std::vector<std::pair<std::string_view, std::size_t>> items;  // names, and where their texts end
        std::vector<std::string_view> texts;
    };
    template <map_type kind>
    void sort(const basic_tables<std::string_view>& tables);
    template <map_type kind>
    void fill(host_tables& tables) const;

    NUVEK_2_18::strings::ustring16 m_path;
    file_text m_text;
    std::vector<sorted_map> m_maps[4];  // by map_type
};

}  // namespace bench
