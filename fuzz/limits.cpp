// Documents at sizes and depths that break readers, one a call: limits ROW [FOLDER]. Fails where the outcome is not the
// one expected; otherwise prints the seconds that it took and the peak of memory in MB.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <vector>

#include "data_mapper/map_collection.h"

namespace {

namespace fs = std::filesystem;
using NUVEK_2_18::parser::xml_stream_parser;

void require(bool condition, const char* what)
{
    if (condition) return;
    std::fprintf(stderr, "%s\n", what);
    std::exit(1);
}

// Every file goes into the folder that the program runs in.
void write(const std::string& name, const std::vector<std::pair<std::string, std::size_t>>& parts)
{
    std::ofstream out(name, std::ios::binary);
    for (const auto& [text, times] : parts) {
        for (std::size_t i = 0; i < times; ++i) out << text;
    }
}

void parse(const std::string& name, xml_stream_parser::error_type expected, std::size_t nodes)
{
    xml_stream_parser parser(NUVEK_2_18::strings::utf8_to_utf16(name), 2);
    require(parser.parse() == expected, "another code");
    for (; nodes > 0; --nodes) {
        require(!parser.node_queue_empty(), "too few nodes");
        parser.node_queue_pop();
    }
    require(parser.node_queue_empty(), "too many nodes");
}

data_mapper4::map_collection load(const std::wstring& name, data_mapper4::map_error_t::result_type expected,
                                  std::size_t maps)
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

void nested()
{
    write("a", {{"<a>", deep}, {"</a>", deep}});
    parse("a", xml_stream_parser::end_of_file, 2 * deep - 1);
}

void left_open()
{
    write("a", {{"<a>", deep}});
    parse("a", xml_stream_parser::incomplete, deep);
}

void write_attributes(const std::string& last)
{
    std::ofstream out("a", std::ios::binary);
    out << "<a";
    for (std::size_t i = 0; i < many; ++i) out << " b" << i << "=''";
    out << last << "/>";
}

void attributes()
{
    write_attributes("");
    parse("a", xml_stream_parser::end_of_file, 1);
    write_attributes(" b7=''");
    parse("a", xml_stream_parser::attribute_redefined, 0);
}

void value()
{
    write("a", {{"<maps><map name='m'><item name='i'/><arg name='", 1},
                {std::string(1024, 'v'), huge / 1024},
                {"'/></map></maps>", 1}});
    auto maps = load(L"a", data_mapper4::map_error_t::no_error, 1);
    std::string text;
    require(maps.get_arg("m", "i", text) && text.size() == huge, "another value");
}

void maps()
{
    std::ofstream out("a", std::ios::binary);
    out << "<maps>";
    for (std::size_t i = 0; i < many; ++i) out << "<map name='" << i * 7919 % many << "'><item name='i'/></map>";
    out << "</maps>";
    out.close();
    load(L"a", data_mapper4::map_error_t::no_error, many);
}

void chain()
{
    for (std::size_t i = 0; i < chained; ++i) {
        const std::string name = std::to_string(i);
        write(name, {{"<maps><map name='" + name + "'><item name='i'/></map><include file='" + std::to_string(i + 1) +
                          "'/></maps>",
                      1}});
    }
    load(L"0", data_mapper4::map_error_t::no_error, chained);
}

void cycles()
{
    const auto including = [](const std::string& file) { return "<include file='" + file + "'/>"; };
    const auto map = [](const std::string& name) { return "<map name='" + name + "'><item name='i'/></map>"; };
    const auto file = [](const std::string& name, const std::string& content) {
        write(name, {{"<maps>" + content + "</maps>", 1}});
    };
    // Where nothing was loaded in between, the second entry ends at once and the file goes on; otherwise it ends at the
    // map that is there already.
    file("self", including("self") + map("m"));
    load(L"self", data_mapper4::map_error_t::no_error, 1);
    file("two", including("two_b") + map("m"));
    file("two_b", including("two") + map("n"));
    load(L"two", data_mapper4::map_error_t::no_error, 2);
    file("three", map("m") + including("three_b"));
    file("three_b", including("three_c"));
    file("three_c", map("n") + including("three"));
    load(L"three", data_mapper4::map_error_t::no_error, 2);
    file("spelled", including("./spelled") + including("././spelled") + map("m"));
    load(L"spelled", data_mapper4::map_error_t::duplicate_map, 1);
}

// Every prefix of the example files: a success only where the root is closed, or open between two constructs.
void prefixes(const fs::path& examples)
{
    for (const auto& entry : fs::recursive_directory_iterator(examples)) {
        if (entry.path().extension() != ".xml") continue;
        std::ifstream in(entry.path(), std::ios::binary);
        const std::string whole{std::istreambuf_iterator<char>(in), {}};
        const std::size_t root = whole.find("<maps");
        std::ofstream out("a", std::ios::binary);
        for (std::size_t size = 1; size <= whole.size(); ++size) {
            out.put(whole[size - 1]).flush();
            const std::string_view prefix(whole.data(), size);
            const bool is_between =
                size > root && prefix.rfind('<') < prefix.rfind('>') && prefix.rfind('>') != prefix.npos;
            const bool is_closed = size >= whole.rfind('>') + 1;
            xml_stream_parser parser(u"a", 2);
            const auto code = parser.parse();
            require((code == xml_stream_parser::end_of_file) == is_closed, "half a document is a whole one");
            require((code == xml_stream_parser::incomplete) == (is_between && !is_closed), "another verdict");
        }
    }
}

std::string peak_of_memory()
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.rfind("VmHWM:", 0) == 0) return std::to_string(std::atol(line.c_str() + 6) / 1000);
    }
    return "?";
}

}  // namespace

int main(int count, char** arguments)
{
    const std::string row = count > 1 ? arguments[1] : "";
    const std::pair<const char*, std::function<void()>> rows[] = {
        {"nested", nested},
        {"left_open", left_open},
        {"attributes", attributes},
        {"value", value},
        {"maps", maps},
        {"chain", chain},
        {"cycles", cycles},
        {"prefixes", [&] { prefixes(count > 2 ? arguments[2] : "."); }},
    };
    for (const auto& [name, run] : rows) {
        if (row != name) continue;
        const auto begin = std::chrono::steady_clock::now();
        run();
        const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
        std::printf("%-10s %6.2f s %6s MB\n", name, seconds.count(), peak_of_memory().c_str());
        return 0;
    }
    std::fprintf(stderr, "usage: limits ROW [FOLDER OF EXAMPLES]\n");
    return 2;
}
