// A lookup in each kind of map. Run it from the project's root directory.
#include <iostream>

#include "data_mapper/load_report.h"
#include "data_mapper/map_collection.h"

int main()
{
    data_mapper4::map_collection maps;
    data_mapper4::load_report report = data_mapper4::load_maps(maps, "examples/master.xml");
    if (report.errors() != 0) {
        std::cerr << report.text();
        return 1;
    }

    std::string text = "hello";
    maps.get_arg("units", "km", text);  // true, "kilometre"
    std::cout << text << '\n';

    maps.get_arg("greeting", "fr", text);  // true, "bonjour"
    std::cout << text << '\n';

    std::vector<std::string> toppings;
    maps.get_args("toppings", "margherita", toppings);  // true, {"tomato", "mozzarella"}
    std::cout << toppings.size() << '\n';

    std::map<std::string, std::string> room;
    maps.get_attribs("rooms", "attic", room);           // true, {{"floor", "4"}, {"name", "attic"}, {"seats", ""}}
    maps.get_attrib("rooms", "atrium", "seats", text);  // true, "200"
    std::cout << room["floor"] << ' ' << text << '\n';

    std::vector<std::map<std::string, std::string>> trains;
    maps.get_args_vector("trains", "Basel", trains);  // true, two sets, each with "name", "time" and "track"
    std::cout << trains[0]["name"] << ' ' << trains[0]["time"] << '\n';

    if (const auto units = maps.view("units")) {
        std::cout << units.text("km").value_or("?") << '\n';
        for (const auto& [name, item] : units) std::cout << name << ": " << item.text() << '\n';
    }

    data_mapper4::map_collection others;
    auto result = others.load(data_mapper4::load_path("examples/master.xml"));
    if (result.type() != data_mapper4::map_error_t::no_error) {
        std::cerr << others.map_error_as_string(result) << ", line " << result.line() << '\n';
    }
    std::cout << others.maps().size() << " maps\n";
}
