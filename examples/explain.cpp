// A host that loads its maps at the start and logs what is wrong with them. Name several master files, such as those of
// the customer and those that came with the host: it uses the first without errors, or exits.
//
//     explain maps/world.xml examples/world/world.xml
#include <iostream>
#include <string>

#include "data_mapper/load_report.h"
#include "data_mapper/map_collection.h"

namespace {

std::string text_of(const data_mapper4::file_place& place)
{
    if (place.line == 0) return place.file;
    return place.file + ':' + std::to_string(place.line) + ':' + std::to_string(place.column);
}

// A line of the log for each finding, and one for each place that has to do with it.
void log(const data_mapper4::load_report& report)
{
    for (const data_mapper4::finding& each : report.findings()) {
        const bool is_error = each.level == data_mapper4::severity::error;
        std::clog << "host: maps: " << (is_error ? "ERROR " : "WARNING ") << text_of(each.where) << ' ' << each.message
                  << (each.hint.empty() ? "" : "; ") << each.hint << " [" << each.rule << "]\n";
        for (const auto& [message, where] : each.related) {
            std::clog << "host: maps: NOTE " << text_of(where) << ' ' << message << '\n';
        }
    }
}

}  // namespace

int main(int argc, char** argv)
{
    data_mapper4::map_collection maps;
    for (int i = 1; i < argc; ++i) {
        const data_mapper4::load_report report = data_mapper4::load_maps(maps, argv[i]);
        log(report);
        if (report.errors() == 0) {
            std::cout << "serving " << report.maps().size() << " maps of " << argv[i] << '\n';
            return 0;
        }
        std::clog << "host: maps: " << argv[i] << " is not loaded, errors: " << report.errors() << '\n';
    }
    std::clog << "host: no maps; stopping\n";
    return 1;
}
