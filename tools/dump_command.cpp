#include <iostream>

#include "tools/commands.h"
#include "tools/json_output.h"
#include "tools/master_file.h"

namespace data_mapper4::tool {

namespace {

// Writes piece by piece: as one JSON value, everything would take several times the memory of the tables. Each item has
// a line of its own, so that a line of a diff has its name.
void print_items(map_collection& maps, const ustring8& map)
{
    const char* separator = "";
    for (const ustring8& item : maps.items(map)) {
        std::cout << separator << "\n        " << one_line(item) << ": "
                  << one_line(json_of(values_of(maps, map, item)));
        separator = ",";
    }
}

void print_map(map_collection& maps, const ustring8& map, map_type kind)
{
    std::cout << "\n    " << one_line(map) << ": {\n      \"kind\": " << one_line(maps.map_type_as_string(kind))
              << ",\n      \"keys\": " << one_line(maps.keys(map)) << ",\n      \"items\": {";
    print_items(maps, map);
    std::cout << "\n      }\n    }";
}

}  // namespace

exit_code run_dump(const command_options& options)
{
    auto [maps, report, code] = load_master(options.files.front());
    if (code == trouble) return code;
    std::cout << "{\n  \"version\": " << json_version << ",\n  \"maps\": {";
    const char* separator = "";
    for (const auto& [map, kind] : maps) {
        std::cout << separator;
        print_map(maps, map, kind);
        separator = ",";
    }
    std::cout << "\n  }\n}\n";
    return code;
}

}  // namespace data_mapper4::tool
