// The code that the public headers show. Run it from the project's root directory.
#include <iostream>

#include "data_mapper/load_report.h"
#include "data_mapper/map_collection.h"
#include "data_mapper/map_t.h"
#include "platform/xml_stream_parser.h"

using NUVEK_2_18::parser::xml_stream_parser;

namespace {

void look_up()
{
    data_mapper4::map_collection maps;
    data_mapper4::map_error_t result = maps.load(L"maps\\world.xml");
    if (result.type() != data_mapper4::map_error_t::no_error) {
        std::cerr << maps.map_error_as_string(result) << ", line " << result.line() << '\n';
    }
    data_mapper4::ustring8 name;
    if (maps.get_arg("territory_names_en", "CH", name)) std::cout << name << '\n';
}

void check()
{
    const data_mapper4::load_report report = data_mapper4::check_maps("maps/world.xml");
    if (report.errors() != 0) std::cerr << report.text();
}

void read_nodes()
{
    xml_stream_parser parser(u"maps.xml", xml_stream_parser::header_optional);
    if (parser.parse() != xml_stream_parser::end_of_file) {
        std::cerr << parser.error_line() << ": " << parser.error_text() << '\n';
    }
    while (!parser.node_queue_empty()) {
        const xml_stream_parser::node node = parser.node_queue_pop();
        std::cout << node.depth << ' ' << node.tag << '\n';
    }
}

// The parser's next node is the first item of a map.
void read_one_map(xml_stream_parser& parser)
{
    data_mapper4::ustring8 value;
    struct colours : data_mapper4::map_t
    {
        using map_t::get_arg;
    };
    colours map;
    if (map.load("colours", parser).type() == data_mapper4::map_error_t::no_error) map.get_arg("red", value);
    std::cout << map.id() << ' ' << value << '\n';
}

}  // namespace

int main()
{
    look_up();
    check();
    read_nodes();
    xml_stream_parser parser(u"examples/kinds.xml", xml_stream_parser::header_optional);
    parser.parse();
    for (const char* tag : {"maps", "map"}) {
        if (parser.node_queue_pop().tag != tag) return 1;
    }
    read_one_map(parser);
}
