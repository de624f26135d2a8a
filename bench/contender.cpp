#include "contender.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>

namespace bench {

namespace {

// Exposes what the library's tables hold, for comparison.
struct open_collection : map_collection
{
    using map_collection::m_collection_maps;
    using map_collection::m_simple_maps;
    using map_collection::m_vector_collection_maps;
    using map_collection::m_vector_maps;
};

template <class table>
struct open_table : table
{
    using table::m_items;
};

template <class their_map, class our_map, class comparison>
bool is_equal(const their_map& theirs, const our_map& ours, comparison is_same)
{
    return std::equal(theirs.begin(), theirs.end(), ours.begin(), ours.end(),
                      [=](const auto& a, const auto& b) { return a.first == b.first && is_same(a.second, b.second); });
}

template <class table, class tables_of_host>
bool has_same_items(const std::map<std::string, table>& theirs, const tables_of_host& ours)
{
    return is_equal(theirs, ours, [](const auto& a, const auto& b) {
        return is_equal((a.*&open_table<table>::m_items).read(), b.items, std::equal_to<>());
    });
}

template <class tables>
void fill(const tables& from, tables& to)
{
    for (const auto& [name, table] : from) {
        auto& filled = to[name];
        filled.schema = table.schema;
        for (const auto& item : table.items) filled.items.emplace_hint(filled.items.end(), item);
    }
}

}  // namespace

const std::vector<peer>& peers()
{
    static const std::vector all{pugixml, rapidxml, expat, libxml2_sax2, libxml2_reader, tinyxml2, boost_ptree};
    return all;
}

bool load(const peer& by, const std::string& path, host_tables& tables)
{
    const std::string folder = path.substr(0, path.rfind('/') + 1);
    table_filler filler(tables);
    bool is_read = by.read(path, &filler);
    for (std::size_t i = 0; is_read && i < filler.includes().size(); ++i) {
        is_read = by.read(folder + filler.includes()[i], &filler);
    }
    return is_read && filler.is_sound();
}

bool load(const std::string& path, map_collection& maps)
{
    return maps.load(library_path(path)).type() == map_error_t::no_error;
}

std::wstring library_path(const std::string& path)
{
    const auto units = NUVEK_2_18::strings::utf8_to_utf16(path);
    std::wstring wide(units.begin(), units.end());
    const auto slash = wide.rfind(L'/');
    if (slash != std::wstring::npos) wide[slash] = L'\\';
    return wide;
}

bool is_equal(map_collection& maps, const host_tables& tables)
{
    const auto has_same_keys = [&](const auto& ours) {
        return std::all_of(ours.begin(), ours.end(),
                           [&](auto& map) { return maps.keys(map.first) == map.second.schema; });
    };
    return has_same_items(maps.*&open_collection::m_simple_maps, std::get<MT_SIMPLE>(tables)) &&
           has_same_items(maps.*&open_collection::m_collection_maps, std::get<MT_COLLECTION>(tables)) &&
           has_same_items(maps.*&open_collection::m_vector_maps, std::get<MT_VECTOR>(tables)) &&
           has_same_items(maps.*&open_collection::m_vector_collection_maps, std::get<MT_VECTOR_COLLECTION>(tables)) &&
           std::apply([&](const auto&... ours) { return (has_same_keys(ours) && ...); }, tables);
}

const data_mapper4::map_t& simple_map(const map_collection& maps, const std::string& name)
{
    return (maps.*&open_collection::m_simple_maps).at(name);
}

std::function<bool(host_tables&)> floor_of(const std::string& path)
{
    host_tables found;
    require(load(rapidxml, path, found), "cannot load " + path);
    // A copy's nodes and texts are in memory in their order.
    return [tables = host_tables(found), units = NUVEK_2_18::strings::utf8_to_utf16(path)](host_tables& to) {
        xml_stream_parser parser(units, xml_stream_parser::header_optional);
        if (parser.parse() != xml_stream_parser::end_of_file) return false;
        fill(std::get<MT_SIMPLE>(tables), std::get<MT_SIMPLE>(to));
        fill(std::get<MT_COLLECTION>(tables), std::get<MT_COLLECTION>(to));
        fill(std::get<MT_VECTOR>(tables), std::get<MT_VECTOR>(to));
        fill(std::get<MT_VECTOR_COLLECTION>(tables), std::get<MT_VECTOR_COLLECTION>(to));
        return true;
    };
}

file_text read_file(const std::string& path)
{
    file_text text;
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
    if (!file) return text;
    text.size = std::filesystem::file_size(path);
    text.bytes.reset(new char[text.size + 1]);  // not make_unique, which would fill it with zeros first
    if (std::fread(text.bytes.get(), 1, text.size, file.get()) != text.size) return {};
    text.bytes[text.size] = '\0';
    return text;
}

}  // namespace bench
