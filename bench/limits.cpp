// Reads documents of sizes and depths that break parsers, one row in each call: limits ROW. Fails if the result is not
// the expected one; otherwise prints the time in seconds and the peak of memory in MB. Writes its files into the
// current directory. scripts/limits limits the memory.
#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "data_mapper/map_collection.h"
#include "shapes.h"

namespace {

using bench::require;
using bench::shape_of;
using bench::write;
using NUVEK_2_18::parser::xml_stream_parser;

void parse(const bench::shape& document, xml_stream_parser::error_type expected, std::size_t nodes)
{
    write("a", document);
    xml_stream_parser parser(u"a", xml_stream_parser::header_optional);
    require(parser.parse() == expected, "another code");
    std::size_t found = 0;
    for (; !parser.node_queue_empty(); ++found) parser.node_queue_pop();
    require(found == nodes, "another number of nodes");
}

data_mapper4::map_collection load(const std::wstring& name, std::size_t maps,
                                  data_mapper4::map_error_t::result_type expected = data_mapper4::map_error_t::no_error)
{
    data_mapper4::map_collection loaded;
    require(loaded.load(name).type() == expected, "another code");
    require(loaded.maps().size() == maps, "another number of maps");
    return loaded;
}

constexpr std::size_t deep = 10000000;
constexpr std::size_t many = 1000000;

void attributes()
{
    bench::shape document = shape_of("attributes", many);
    parse(document, xml_stream_parser::end_of_file, 5);
    document.back().text = " a" + bench::number_at(7) + "=''" + document.back().text;
    parse(document, xml_stream_parser::attribute_redefined, 2);
}

void value()
{
    write("a", shape_of("value", 1 << 20));
    auto maps = load(L"a", 1);
    std::string text;
    require(maps.get_arg("m", "a", text) && text.size() == std::size_t{1} << 30, "another value");
}

// A file of maps and includes in the order given; a map's name begins with "m".
void write_maps(const std::string& file, std::initializer_list<std::string> names)
{
    std::string content;
    for (const std::string& name : names) {
        const bool is_map = name[0] == 'm';
        content += is_map ? "<map name='" + name + "'><item name='i'/></map>" : "<include file='" + name + "'/>";
    }
    write(file, {{"<maps>" + content + "</maps>"}});
}

void chain()
{
    for (std::size_t i = 0; i < 3000; ++i) {
        write_maps(std::to_string(i), {"m" + std::to_string(i), std::to_string(i + 1)});
    }
    load(L"0", 3000);
}

// If nothing was loaded in between, the second inclusion ends at once and the file goes on; otherwise it ends at the
// map that is already loaded.
void cycles()
{
    write_maps("self", {"self", "m"});
    load(L"self", 1);
    write_maps("two", {"two_b", "m"});
    write_maps("two_b", {"two", "m2"});
    load(L"two", 2);
    write_maps("three", {"m", "three_b"});
    write_maps("three_b", {"three_c"});
    write_maps("three_c", {"m2", "three"});
    load(L"three", 2);
    write_maps("spelled", {"./spelled", "././spelled", "m"});
    load(L"spelled", 1, data_mapper4::map_error_t::duplicate_map);
}

// Every prefix of a document: a success only if the root is closed, or open between two constructs.
void prefixes(const std::string& whole)
{
    const std::size_t root = whole.find("<maps");
    std::ofstream out("a", std::ios::binary);
    for (std::size_t size = 1; size <= whole.size(); ++size) {
        out.put(whole[size - 1]).flush();
        const std::string_view prefix(whole.data(), size);
        const bool is_between =
            size > root && prefix.rfind('<') < prefix.rfind('>') && prefix.rfind('>') != prefix.npos;
        const bool is_closed = size >= whole.rfind('>') + 1;
        xml_stream_parser parser(u"a", xml_stream_parser::header_optional);
        const auto code = parser.parse();
        require((code == xml_stream_parser::end_of_file) == is_closed, "half a document is a whole one");
        require((code == xml_stream_parser::incomplete) == (is_between && !is_closed), "another verdict");
    }
}

void prefixes_of_all()
{
    for (const auto& entry : std::filesystem::recursive_directory_iterator(DATA_MAPPER4_EXAMPLES)) {
        std::ifstream in(entry.path(), std::ios::binary);
        if (entry.path().extension() == ".xml") prefixes({std::istreambuf_iterator<char>(in), {}});
    }
}

// The first element has many attributes, which the others leave out.
void schema()
{
    const bench::part names = {" a", 8000, "=''"};
    const bench::part items = {"/><item name='", 5000, "'"};
    const bench::part args = {"/><arg name='", 5000, "'"};
    write("a", {{"<maps><collection_map name='c'><item name='i'"},
                names,
                items,
                {"/></collection_map>"},
                {"<vector_collection_map name='v'><item name='i'/><arg name='r'"},
                names,
                args,
                {"/></vector_collection_map></maps>"}});
    load(L"a", 2);
}

const std::map<std::string, void (*)()> rows = {
    {"prefixes", prefixes_of_all},
    {"cycles", cycles},
    {"nested", [] { parse(shape_of("nesting", deep), xml_stream_parser::end_of_file, 2 * deep - 1); }},
    {"left_open", [] { parse(shape_of("left_open", deep), xml_stream_parser::incomplete, deep); }},
    {"attributes", attributes},
    {"value", value},
    {"maps", [] { write("a", shape_of("maps", many)), load(L"a", many); }},
    {"chain", chain},
    {"schema", schema},
};

}  // namespace

int main(int count, char** arguments)
{
    if (count != 2 || rows.count(arguments[1]) == 0) return 2;
    const auto begin = std::chrono::steady_clock::now();
    try {
        rows.at(arguments[1])();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: %s\n", arguments[1], error.what());
        return 1;
    }
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    std::printf("%-10s %6.2f s %6ld MB\n", arguments[1], seconds.count(), usage.ru_maxrss / 1000);
    return 0;
}
