#include <iostream>
#include <optional>

#include "data_mapper/report/nearest_name.h"
#include "data_mapper/report/wording.h"
#include "tools/commands.h"
#include "tools/json_output.h"
#include "tools/master_file.h"

namespace data_mapper4::tool {

namespace {

// Says what is missing, and the name that is near or else what there is.
void report_miss(const ustring8& what, const ustring8& name, const std::vector<ustring8>& names, const ustring8& other)
{
    constexpr std::size_t most_compared = 10000;
    const std::string_view nearest = nearest_name(name, names, most_compared);
    std::cerr << "no " << what << (nearest.empty() ? "; " + other : did_you_mean(in_quotes(nearest))) << '\n';
}

// What is missing may not have been loaded if the files are faulty, so no similar name is suggested then.
constexpr const char* not_loaded = "it may not have been loaded";

bool find_map(loaded_master& master, const ustring8& map, const std::filesystem::path& file)
{
    if (master.maps.is_loaded(map)) return true;
    const bool is_sound = master.code == success;
    std::vector<ustring8> names;
    for (const auto& [name, kind] : master.maps) names.push_back(name);
    report_miss("map " + in_quotes(map), map, is_sound ? names : std::vector<ustring8>(),
                is_sound ? "run: data_mapper list " + command_word(file.u8string()) : not_loaded);
    return false;
}

bool find_item(loaded_master& master, const ustring8& map, const ustring8& item, const std::filesystem::path& file)
{
    if (master.maps.has_item(map, item)) return true;
    const bool is_sound = master.code == success;
    report_miss(
        "item " + in_quotes(item) + " in map " + in_quotes(map), item,
        is_sound ? master.maps.items(map) : std::vector<ustring8>(),
        is_sound ? "run: data_mapper get " + command_word(file.u8string()) + ' ' + command_word(map) : not_loaded);
    return false;
}

bool find_attribute(map_collection& maps, const ustring8& map, const ustring8& attribute)
{
    if (maps.has_key(map, attribute)) return true;
    const std::vector<ustring8> keys = maps.keys(map);
    const ustring8 all = keys.empty() ? "it has none" : "it has: " + listed(keys);
    report_miss("attribute " + in_quotes(attribute) + " in map " + in_quotes(map), attribute, keys, all);
    return false;
}

// The values of what the names say: a map's item names, an item, or one attribute of it. None after a miss.
std::optional<item_values> look_up(loaded_master& master, const command_options& options)
{
    map_collection& maps = master.maps;
    const std::vector<ustring8>& names = options.names;
    if (!find_map(master, names[0], options.files.front())) return std::nullopt;
    if (names.size() == 1) return item_values{true, maps.items(names[0]), {}};
    if (!find_item(master, names[0], names[1], options.files.front())) return std::nullopt;
    item_values values = values_of(maps, names[0], names[1]);
    if (names.size() == 2) return values;
    if (!find_attribute(maps, names[0], names[2])) return std::nullopt;
    for (const attribute_set& set : values.sets) values.texts.push_back(set.at(names[2]));
    values.sets.clear();
    return values;
}

// One text a line; or one attribute a line, in the order of the map, with an empty line between two sets.
void print_text(const item_values& values, const std::vector<ustring8>& keys)
{
    for (const ustring8& text : values.texts) std::cout << text << '\n';
    for (std::size_t i = 0; i < values.sets.size(); ++i) {
        if (i != 0) std::cout << '\n';
        for (const ustring8& key : keys) std::cout << key << ": " << values.sets[i].at(key) << '\n';
    }
}

}  // namespace

exit_code run_get(const command_options& options)
{
    loaded_master master = load_master(options.files.front());
    if (master.code == trouble) return master.code;
    const std::optional<item_values> values = look_up(master, options);
    if (!values) return failure;
    if (options.is_json) {
        print(json_of(*values));
    } else {
        print_text(*values, master.maps.keys(options.names.front()));
    }
    return master.code;
}

}  // namespace data_mapper4::tool
