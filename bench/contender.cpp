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

template <class table>
struct open_rows : table
{
    using table::m_attrib_names;
};

template <map_type kind, class table>
bool has_same_items(const table& theirs, const host_table<kind, std::string>& ours)
{
    if constexpr (kind == MT_COLLECTION || kind == MT_VECTOR_COLLECTION) {
        if (theirs.*&open_rows<table>::m_attrib_names != ours.schema) return false;
    }
    const auto& items = (theirs.*&open_table<table>::m_items).read();
    return std::equal(items.begin(), items.end(), ours.items.begin(), ours.items.end(),
                      [](const auto& a, const auto& b) { return a.first == b.first && a.second == b.second; });
}

template <map_type kind, class table>
bool has_same_maps(const std::map<std::string, table>& theirs, const host_tables& tables)
{
    const auto& ours = std::get<kind>(tables);
    return std::equal(theirs.begin(), theirs.end(), ours.begin(), ours.end(), [](const auto& a, const auto& b) {
        return a.first == b.first && has_same_items<kind>(a.second, b.second);
    });
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

bool is_equal(const map_collection& maps, const host_tables& tables)
{
    return has_same_maps<MT_SIMPLE>(maps.*&open_collection::m_simple_maps, tables) &&
           has_same_maps<MT_COLLECTION>(maps.*&open_collection::m_collection_maps, tables) &&
           has_same_maps<MT_VECTOR>(maps.*&open_collection::m_vector_maps, tables) &&
           has_same_maps<MT_VECTOR_COLLECTION>(maps.*&open_collection::m_vector_collection_maps, tables);
}

const data_mapper4::map_t& simple_map(const map_collection& maps, const std::string& name)
{
    return (maps.*&open_collection::m_simple_maps).at(name);
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
