// A small host: loads the master file named on its command line, lists its maps and looks up a few items of each kind.
//
//     lookup examples/world/world.xml
#include <iostream>

#include "data_mapper/load_report.h"
#include "data_mapper/map_collection.h"

namespace {

using data_mapper4::map_collection;
using data_mapper4::ustring8;

void list_maps(map_collection& maps)
{
    for (const auto& [name, type] : maps) std::cout << "  " << name << " (" << maps.map_type_as_string(type) << ")\n";
}

// A simple map has one text for each item. A miss leaves the output unchanged, here a default.
void ask_for_text(map_collection& maps, const ustring8& map_name, const ustring8& item_name)
{
    ustring8 text = "(no such item)";
    maps.get_arg(map_name, item_name, text);
    std::cout << map_name << " / " << item_name << ": " << text << '\n';
}

// A vector map has a list of texts for each item. A miss empties the output.
void ask_for_list(map_collection& maps, const ustring8& map_name, const ustring8& item_name)
{
    std::vector<ustring8> values;
    const bool is_found = maps.get_args(map_name, item_name, values);
    std::cout << map_name << " / " << item_name << ": " << (is_found ? "" : "(no such item)");
    for (const ustring8& value : values) std::cout << value << "  ";
    std::cout << '\n';
}

// A collection map has named attributes for each item, which can be looked up one at a time or all at once.
void ask_for_attributes(map_collection& maps, const ustring8& map_name, const ustring8& item_name)
{
    std::map<ustring8, ustring8> attribs;
    const bool is_found = maps.get_attribs(map_name, item_name, attribs);
    std::cout << map_name << " / " << item_name << ": " << (is_found ? "" : "(no such item)");
    for (const auto& [name, value] : attribs) std::cout << name << "=" << value << "  ";
    std::cout << '\n';
}

// A vector collection map has a list of attribute sets for each item. The first few are enough here.
void ask_for_sets(map_collection& maps, const ustring8& map_name, const ustring8& item_name)
{
    std::vector<std::map<ustring8, ustring8>> sets;
    const bool is_found = maps.get_args_vector(map_name, item_name, sets);
    std::cout << map_name << " / " << item_name << ": ";
    std::cout << (is_found ? std::to_string(sets.size()) + " sets" : "(no such item)") << '\n';
    for (std::size_t i = 0; i < sets.size() && i < 3; ++i) {
        std::cout << "    " << sets[i]["name"] << ": " << sets[i]["text"] << '\n';
    }
}

}  // namespace

// On Windows, narrow arguments cannot represent most characters.
#if defined(_WIN32)
int wmain(int argc, wchar_t** argv)
#else
int main(int argc, char** argv)
#endif
{
    if (argc != 2) {
        std::cerr << "usage: lookup MASTER_FILE\n";
        return 2;
    }
    const std::filesystem::path master = argv[1];
    map_collection maps;
    auto result = maps.load(data_mapper4::load_path(master));
    std::cout << master.u8string() << ": " << maps.map_error_as_string(result);
    if (result.type() != data_mapper4::map_error_t::no_error) std::cout << ", line " << result.line();
    std::cout << '\n';
    list_maps(maps);
    for (const char* item : {"CI", "no-such-territory"}) ask_for_text(maps, "territory_names_en", item);
    for (const char* item : {"CI", "JP"}) ask_for_text(maps, "territory_names_ja", item);
    for (const char* item : {"W. Europe Standard Time", "no-such-zone"}) ask_for_list(maps, "windows_time_zones", item);
    for (const char* item : {"JPY", "no-such-currency"}) ask_for_attributes(maps, "currencies", item);
    for (const char* item : {"CH", "no-such-territory"}) ask_for_sets(maps, "subdivisions", item);
    // Asking a map of another kind is a miss like any other; only type() tells them apart.
    ustring8 unit = "unchanged";
    const bool is_found = maps.get_attrib("territory_names_en", "CH", "text", unit);
    std::cout << "get_attrib of a simple map: " << std::boolalpha << is_found << ", output " << unit << '\n';
    return result.type() == data_mapper4::map_error_t::no_error ? 0 : 1;
}
