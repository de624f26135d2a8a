// Documents at sizes and depths that break readers, one a call: limits ROW [FOLDER]. Fails where the outcome is not the
// one expected; otherwise prints the seconds that it took and the peak of memory in MB. Every file goes into the folder
// that it runs in.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>

#include "data_mapper/map_collection.h"
#include "shapes.h"

namespace {

namespace fs = std::filesystem;
using bench::require;
using bench::shape_of;
using bench::write;
using NUVEK_2_18::parser::xml_stream_parser;

void parse(const bench::shape& document, xml_stream_parser::error_type expected, std::size_t nodes)
{
    write("a", document);
    xml_stream_parser parser(u"a", xml_stream_parser::header_optional);
    require(parser.parse() == expected, "another code");
    for (; nodes > 0; --nodes) {
        require(!parser.node_queue_empty(), "too few nodes");
        parser.node_queue_pop();
    }
    require(parser.node_queue_empty(), "too many nodes");
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
constexpr std::size_t huge = std::size_t{1} << 30;
constexpr std::size_t chained = 3000;

void attributes()
{
    bench::shape document = shape_of("attributes", many);
    parse(document, xml_stream_parser::end_of_file, 5);
    document.back().text = " a" + bench::number_at(7) + "=''" + document.back().text;
    parse(document, xml_stream_parser::attribute_redefined, 2);
}

void value()
{
    write("a", shape_of("value", huge / 1024));
    auto maps = load(L"a", 1);
    std::string text;
    require(maps.get_arg("m", "a", text) && text.size() == huge, "another value");
}

std::string map(const std::string& name)
{
    return "<map name='" + name + "'><item name='i'/></map>";
}

std::string including(const std::string& file)
{
    return "<include file='" + file + "'/>";
}

void write_maps(const std::string& name, const std::string& content)
{
    write(name, {{"<maps>" + content + "</maps>"}});
}

void chain()
{
    for (std::size_t i = 0; i < chained; ++i) {
        write_maps(std::to_string(i), map(std::to_string(i)) + including(std::to_string(i + 1)));
    }
    load(L"0", chained);
}

// Where nothing was loaded in between, the second entry ends at once and the file goes on; otherwise it ends at the map
// that is there already.
void cycles()
{
    write_maps("self", including("self") + map("m"));
    load(L"self", 1);
    write_maps("two", including("two_b") + map("m"));
    write_maps("two_b", including("two") + map("n"));
    load(L"two", 2);
    write_maps("three", map("m") + including("three_b"));
    write_maps("three_b", including("three_c"));
    write_maps("three_c", map("n") + including("three"));
    load(L"three", 2);
    write_maps("spelled", including("./spelled") + including("././spelled") + map("m"));
    load(L"spelled", 1, data_mapper4::map_error_t::duplicate_map);
}

// Every prefix of a document: a success only where the root is closed, or open between two constructs.
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

void prefixes_of_all(const fs::path& examples)
{
    for (const auto& entry : fs::recursive_directory_iterator(examples)) {
        std::ifstream in(entry.path(), std::ios::binary);
        if (entry.path().extension() == ".xml") prefixes({std::istreambuf_iterator<char>(in), {}});
    }
}

long peak_of_memory()
{
    std::ifstream status("/proc/self/status");
    std::string line;
    while (line.rfind("VmHWM:", 0) != 0 && std::getline(status, line)) {
    }
    return std::atol(line.c_str() + 6) / 1000;
}

void run(const std::string& row, const std::string& examples)
{
    const std::map<std::string, std::function<void()>> rows = {
        {"nested", [] { parse(shape_of("nesting", deep), xml_stream_parser::end_of_file, 2 * deep - 1); }},
        {"left_open",
         [] {
             parse({{"<a>", deep}}, xml_stream_parser::incomplete, deep);
         }},
        {"attributes", attributes},
        {"value", value},
        {"maps", [] { write("a", shape_of("maps", many)), load(L"a", many); }},
        {"chain", chain},
        {"cycles", cycles},
        {"prefixes", [&] { prefixes_of_all(examples); }},
    };
    const auto begin = std::chrono::steady_clock::now();
    rows.at(row)();
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
    std::printf("%-10s %6.2f s %6ld MB\n", row.c_str(), seconds.count(), peak_of_memory());
}

}  // namespace

int main(int count, char** arguments)
{
    try {
        run(count > 1 ? arguments[1] : "", count > 2 ? arguments[2] : ".");
    } catch (const std::exception& error) {
        std::fprintf(stderr, "limits ROW [FOLDER OF EXAMPLES]: %s\n", error.what());
        return 1;
    }
    return 0;
}
