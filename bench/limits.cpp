// Reads documents of sizes and depths that break parsers, one row in each call: limits ROW. Fails if the result is not
// the expected one; otherwise prints the time in seconds and the peak of memory in MB. Writes its files into the
// current directory.
#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
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
    for (std::size_t i = 0; i < 3000; ++i) {
        write_maps(std::to_string(i), map(std::to_string(i)) + including(std::to_string(i + 1)));
    }
    load(L"0", 3000);
}

// If nothing was loaded in between, the second inclusion ends at once and the file goes on; otherwise it ends at the
// map that is already loaded.
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

struct limit
{
    rlim_t megabytes;  // of address space
    std::function<void()> run;
};

const std::map<std::string, limit> rows = {
    {"prefixes", {100, prefixes_of_all}},
    {"cycles", {100, cycles}},
    {"nested", {800, [] { parse(shape_of("nesting", deep), xml_stream_parser::end_of_file, 2 * deep - 1); }}},
    {"left_open", {600, [] { parse(shape_of("left_open", deep), xml_stream_parser::incomplete, deep); }}},
    {"attributes", {400, attributes}},
    {"value", {2300, value}},
    {"maps", {700, [] { write("a", shape_of("maps", many)), load(L"a", many); }}},
    {"chain", {100, chain}},
};

}  // namespace

int main(int count, char** arguments)
{
    if (count != 2 || rows.count(arguments[1]) == 0) return 2;
    const limit& row = rows.at(arguments[1]);
    const rlimit most{row.megabytes * 1000000, row.megabytes * 1000000};
    rusage usage{};
    const auto begin = std::chrono::steady_clock::now();
    try {
        require(setrlimit(RLIMIT_AS, &most) == 0, "the limit cannot be set");
        row.run();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: %s\n", arguments[1], error.what());
        return 1;
    }
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
    getrusage(RUSAGE_SELF, &usage);
    std::printf("%-10s %6.2f s %6ld MB\n", arguments[1], seconds.count(), usage.ru_maxrss / 1000);
    return 0;
}
