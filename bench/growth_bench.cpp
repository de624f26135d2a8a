// How the time to load grows when a file grows to four times its size in one way. Elements inside each other are no map
// file, so there the parser is timed, with all its nodes taken.
#include "benches.h"
#include "contender.h"
#include "documents.h"
#include "platform/xml_stream_parser.h"

namespace bench {

namespace {

using NUVEK_2_18::parser::xml_stream_parser;

struct dimension
{
    const char* name;
    std::size_t n;
    std::string (*content)(std::size_t n);
    bool is_map_file = true;
};

std::string simple_map(const std::string& name, const std::string& content)
{
    return "<map name=\"" + name + "\">" + content + "</map>\n";
}

std::string repeated(const std::string& text, std::size_t n)
{
    std::string all;
    for (; n > 0; --n) all += text;
    return all;
}

std::string items(std::size_t n)
{
    std::string all;
    for (; n > 0; --n) all += "<item name=\"" + item_name(n) + "\"/><arg name=\"a text\"/>\n";
    return "<maps>" + simple_map("m", all) + "</maps>";
}

std::string maps(std::size_t n)
{
    std::string all = "<maps>";
    for (; n > 0; --n) all += simple_map(item_name(n), "<item name=\"a\"/><arg name=\"b\"/>");
    return all + "</maps>";
}

std::string includes(std::size_t n)
{
    std::string all = "<maps>";
    for (; n > 0; --n) {
        const std::string file = "includes/" + std::to_string(n) + ".xml";
        const std::string map = simple_map(std::to_string(n), "<item name=\"a\"/><arg name=\"b\"/>");
        write_document(file, "<maps>" + map + "</maps>");
        all += "<include file=\"" + file + "\"/>\n";
    }
    return all + "</maps>";
}

std::string attributes(std::size_t n)
{
    std::string all = "<maps><collection_map name=\"m\"><item name=\"a\"";
    for (; n > 0; --n) all += " a" + std::to_string(n * 7919 % 1000003) + "=\"v\"";
    return all + "/></collection_map></maps>";
}

std::string nesting(std::size_t n)
{
    return repeated("<a>", n) + repeated("</a>", n);
}

std::string name_length(std::size_t n)
{
    return "<maps><collection_map name=\"m\"><item name=\"a\" " + std::string(n, 'a') +
           "=\"v\"/></collection_map></maps>";
}

std::string value_length(std::size_t n)
{
    return "<maps>" + simple_map("m", "<item name=\"a\"/><arg name=\"" + std::string(n, 'a') + "\"/>") + "</maps>";
}

std::string text_length(std::size_t n)
{
    return "<maps>" + simple_map("m", std::string(n, 'a') + "<item name=\"a\"/><arg name=\"b\"/>") + "</maps>";
}

std::string comment_length(std::size_t n)
{
    return "<maps><!--" + std::string(n, 'a') + "-->" + simple_map("m", "<item name=\"a\"/><arg name=\"b\"/>") +
           "</maps>";
}

void load_map_file(benchmark::State& state, const std::string& path)
{
    for (auto _ : state) {
        data_mapper4::map_collection maps;
        if (!load(path, maps) || maps.begin() == maps.end()) stop("cannot load " + path);
    }
}

void parse_file(benchmark::State& state, const std::string& path)
{
    const auto units = NUVEK_2_18::strings::utf8_to_utf16(path);
    for (auto _ : state) {
        xml_stream_parser parser(units, xml_stream_parser::header_optional);
        if (parser.parse() != xml_stream_parser::end_of_file) stop("cannot parse " + path);
        while (!parser.node_queue_empty()) benchmark::DoNotOptimize(parser.node_queue_pop());
    }
}

void measure(benchmark::State& state, const dimension& growing, std::size_t n)
{
    const std::string path = written_once("growth_" + std::string(growing.name) + "_" + std::to_string(n) + ".xml",
                                          [&] { return growing.content(n); });
    growing.is_map_file ? load_map_file(state, path) : parse_file(state, path);
}

constexpr dimension dimensions[] = {
    {"items", 5000, items},
    {"maps", 2000, maps},
    {"includes", 250, includes},
    {"attributes", 2500, attributes},
    {"nesting", 50000, nesting, false},
    {"name", 1 << 22, name_length},
    {"value", 1 << 22, value_length},
    {"text", 1 << 22, text_length},
    {"comment", 1 << 22, comment_length},
};

}  // namespace

void register_growth()
{
    for (const dimension& growing : dimensions) {
        const std::string rows = "growth/" + std::string(growing.name) + "/";
        add_row(rows + "n", benchmark::kMillisecond, [=](auto& state) { measure(state, growing, growing.n); });
        add_row(rows + "4n", benchmark::kMillisecond, [=](auto& state) { measure(state, growing, 4 * growing.n); });
    }
}

}  // namespace bench
