// What benchmarks and limits share: documents that are large in one way, and writing files.
#pragma once

#include <cstddef>
#include <fstream>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace bench {

inline void require(bool condition, const std::string& message)
{
    if (!condition) throw std::runtime_error(message);
}

// A text that is repeated. If `end` is not empty, each repetition is the text, a number from number_at, and the end.
struct part
{
    std::string text;
    std::size_t times = 1;
    std::string end = {};
};

using shape = std::vector<part>;

// Different for every index below 1,000,003, and in no order.
inline std::string number_at(std::size_t index)
{
    return std::to_string(index * 7919 % 1000003);
}

inline void write(const std::string& path, const shape& parts)
{
    std::ofstream out(path, std::ios::binary);
    for (const auto& [text, times, end] : parts) {
        for (std::size_t i = 0; i < times; ++i) {
            out << text;
            if (!end.empty()) out << number_at(i) << end;
        }
    }
    out.close();
    require(out.good(), "cannot write " + path);
}

// A document in which one thing grows with n. Lengths are in KiB.
inline shape shape_of(const std::string& what, std::size_t n)
{
    const std::string kibibyte(1024, 'a');
    const std::string item = "<item name='a'/><arg name='b'/>";
    const std::string map_begin = "<maps><map name='m'>";
    const std::string map_end = "</map></maps>";
    const std::string row_begin = "<maps><collection_map name='m'><item name='a' ";
    const std::string row_end = "/></collection_map></maps>";
    const std::map<std::string, shape> shapes = {
        {"items", {{map_begin}, {"<item name='the item ", n, "'/><arg name='a text'/>\n"}, {map_end}}},
        {"maps", {{"<maps>"}, {"<map name='", n, "'>" + item + "</map>\n"}, {"</maps>"}}},
        {"includes", {{"<maps>"}, {"<include file='includes/", n, ".xml'/>\n"}, {"</maps>"}}},
        {"attributes", {{row_begin}, {" a", n, "='v'"}, {row_end}}},
        {"nesting", {{"<a>", n}, {"</a>", n}}},
        {"left_open", {{"<a>", n}}},
        {"name", {{row_begin}, {kibibyte, n}, {"='v'" + row_end}}},
        {"value", {{map_begin + "<item name='a'/><arg name='"}, {kibibyte, n}, {"'/>" + map_end}}},
        {"text", {{map_begin}, {kibibyte, n}, {item + map_end}}},
        {"comment", {{"<maps><!--"}, {kibibyte, n}, {"--><map name='m'>" + item + map_end}}},
    };
    return shapes.at(what);
}

}  // namespace bench
