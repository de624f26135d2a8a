#include "contender.h"

#include <cstdio>
#include <iterator>

namespace bench {

namespace {

using data_mapper4::map_collection;
using attribute_set = std::map<std::string, std::string>;

// The library's tables opened up, to count what they hold. A copy, so that the tables themselves are not touched.
struct open_collection : map_collection
{
    explicit open_collection(const map_collection& other) : map_collection(other) {}
    using map_collection::collection_map;
    using map_collection::simple_map;
    using map_collection::vector_collection_map;
    using map_collection::vector_map;
};

template <class table>
std::size_t count(const table& items)
{
    struct open_table : table
    {
        explicit open_table(const table& other) : table(other) {}
        using table::begin;
        using table::end;
    };
    open_table opened(items);
    return static_cast<std::size_t>(std::distance(opened.begin(), opened.end()));
}

attribute_set named(const names& schema, const row& values)
{
    attribute_set set;
    for (std::size_t i = 0; i < schema.size(); ++i) set.emplace(schema[i], values[i]);
    return set;
}

bool is_equal(map_collection& maps, const std::string& map_name, const simple_table& table)
{
    std::string value;
    for (const auto& [name, text] : table) {
        if (!maps.get_arg(map_name, name, value) || value != text) return false;
    }
    return count(open_collection(maps).simple_map(map_name)) == table.size();
}

bool is_equal(map_collection& maps, const std::string& map_name, const vector_table& table)
{
    std::vector<std::string> values;
    for (const auto& [name, texts] : table) {
        if (!maps.get_args(map_name, name, values) || values != texts) return false;
    }
    return count(open_collection(maps).vector_map(map_name)) == table.size();
}

bool is_equal(map_collection& maps, const std::string& map_name, const collection_table& table)
{
    attribute_set set;
    for (const auto& [name, values] : table.items) {
        if (!maps.get_attribs(map_name, name, set) || set != named(table.schema, values)) return false;
    }
    return count(open_collection(maps).collection_map(map_name)) == table.items.size();
}

bool is_equal(map_collection& maps, const std::string& map_name, const vector_collection_table& table)
{
    std::vector<attribute_set> sets;
    std::vector<attribute_set> expected;
    for (const auto& [name, rows] : table.items) {
        expected.clear();
        for (const row& values : rows) expected.push_back(named(table.schema, values));
        if (!maps.get_args_vector(map_name, name, sets) || sets != expected) return false;
    }
    return count(open_collection(maps).vector_collection_map(map_name)) == table.items.size();
}

// The name of the first of these tables that the library has not, or has otherwise.
template <class table>
std::string difference(map_collection& maps, data_mapper4::map_type type, const std::map<std::string, table>& tables)
{
    for (const auto& [name, items] : tables) {
        if (maps.type(name) != type || !is_equal(maps, name, items)) return name;
    }
    return {};
}

}  // namespace

const std::vector<peer>& peers()
{
    static const std::vector<peer> all = {pugixml,        rapidxml, expat,      libxml2_sax2,
                                          libxml2_reader, tinyxml2, boost_ptree};
    return all;
}

bool load(const peer& by, const std::string& path, host_tables& tables)
{
    const std::string folder = path.substr(0, path.rfind('/') + 1);
    table_filler filler(tables);
    if (!by.read(path, filler)) return false;
    for (std::size_t i = 0; i < filler.includes().size(); ++i) {
        if (!by.read(folder + filler.includes()[i], filler)) return false;
    }
    return true;
}

bool load(const std::string& path, map_collection& maps)
{
    return maps.load(library_path(path)).type() == data_mapper4::map_error_t::no_error;
}

std::wstring library_path(const std::string& path)
{
    const auto units = NUVEK_2_18::strings::utf8_to_utf16(path);
    std::wstring wide(units.begin(), units.end());
    const auto slash = wide.rfind(L'/');
    if (slash != std::wstring::npos) wide[slash] = L'\\';
    return wide;
}

std::string difference(map_collection& maps, const host_tables& tables)
{
    std::string name = difference(maps, data_mapper4::MT_SIMPLE, tables.simple);
    if (name.empty()) name = difference(maps, data_mapper4::MT_VECTOR, tables.vector);
    if (name.empty()) name = difference(maps, data_mapper4::MT_COLLECTION, tables.collection);
    if (name.empty()) name = difference(maps, data_mapper4::MT_VECTOR_COLLECTION, tables.vector_collection);
    if (!name.empty()) return "the map " + name + " differs";
    const std::size_t loaded =
        tables.simple.size() + tables.vector.size() + tables.collection.size() + tables.vector_collection.size();
    return loaded == maps.maps().size() ? "" : "the number of maps differs";
}

file_text read_file(const std::string& path)
{
    file_text text;
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
    if (!file || std::fseek(file.get(), 0, SEEK_END) != 0) return text;
    const long size = std::ftell(file.get());
    if (size < 0 || std::fseek(file.get(), 0, SEEK_SET) != 0) return text;
    text.size = static_cast<std::size_t>(size);
    text.bytes.reset(new char[text.size + 1]);  // not make_unique, which would write zeros over all of it first
    if (std::fread(text.bytes.get(), 1, text.size, file.get()) != text.size) return {};
    text.bytes[text.size] = '\0';
    return text;
}

}  // namespace bench
