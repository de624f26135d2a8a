// Documents for the tests, written to a folder of their own, and the results of reading them as one line of text.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "data_mapper/diagnostics/text_dumps.h"
#include "data_mapper/map_collection.h"
#include "platform/xml_stream_parser.h"

namespace documents {

using data_mapper4::ustring8;
using NUVEK_2_18::parser::xml_stream_parser;

// A new folder, removed with its object.
class folder
{
public:
    folder()
        : m_path(std::filesystem::temp_directory_path() / ("data_mapper4-" + std::to_string(std::random_device()())))
    {
        std::filesystem::create_directory(m_path);
    }
    ~folder() { std::filesystem::remove_all(m_path); }

    // Also creates the folders in the name, which are separated by slashes. Names are in UTF-8.
    void write(const std::string& name, std::string_view content) const
    {
        std::filesystem::create_directories(system_path(name).parent_path());
        std::ofstream(system_path(name), std::ios::binary) << content;
    }

    // The path of a file in the folder as a host writes it: with backslashes on every system.
    std::wstring path(const std::string& name) const
    {
        std::wstring result = system_path(name).wstring();
        std::replace(result.begin(), result.end(), L'/', L'\\');
        return result;
    }
    std::filesystem::path system_path(const std::string& name) const { return m_path / std::filesystem::u8path(name); }

private:
    std::filesystem::path m_path;
};

// Inputs with the same outcome.
struct group
{
    std::string expected;
    std::vector<std::string> inputs;
};

template <class function>
void check(const std::vector<group>& groups, function outcome_of)
{
    for (const group& each : groups) {
        for (const std::string& input : each.inputs) EXPECT_EQ(outcome_of(input), each.expected) << input;
    }
}

inline std::u16string units(const std::wstring& path)
{
    return {path.begin(), path.end()};
}

// A parser that has parsed a document and whose first nodes were taken.
inline std::unique_ptr<xml_stream_parser> parsed(std::string_view document, int taken = 0, unsigned int options = 2)
{
    const folder home;
    home.write("document", document);
    auto parser = std::make_unique<xml_stream_parser>(units(home.path("document")), options);
    parser->parse();
    for (; taken > 0; --taken) parser->node_queue_pop();
    return parser;
}

// The nodes left in the queue. "a+" is a start node, "/a" a closing node, "a" a whole element; then "@" and the line, the
// attributes in brackets and the data in quotes. Control characters are escaped.
inline std::string nodes(xml_stream_parser& parser)
{
    std::string text;
    while (!parser.node_queue_empty()) {
        const xml_stream_parser::node node = parser.node_queue_pop();
        text += (text.empty() ? "" : " ") + (node.closing ? "/" + node.tag : node.tag);
        text += (node.status == xml_stream_parser::incomplete ? "+@" : "@") + std::to_string(node.line);
        for (const auto& [name, value] : node.attributes) text += '[' + name + '=' + value + ']';
        if (!node.data.empty()) text += '"' + node.data + '"';
    }
    std::string escaped;
    for (const char each : text) escaped += each > 0 && each < ' ' ? "\\" + std::to_string(each) : std::string(1, each);
    return escaped;
}

// Code, error line and nodes: "end_of_file 0: a@1".
inline std::string outcome(std::string_view document)
{
    const auto parser = parsed(document);
    const std::string code = data_mapper4::parse_error_as_string(parser->error());
    return code + ' ' + std::to_string(parser->error_line()) + ": " + nodes(*parser);
}

// "a", "(a,b)" or, for a map, "(a=1,b=2)".
inline std::string rendered(const ustring8& text)
{
    return text;
}

template <class container>
std::string rendered(const container& values);

template <class first, class second>
std::string rendered(const std::pair<first, second>& pair)
{
    return rendered(pair.first) + '=' + rendered(pair.second);
}

template <class container>
std::string rendered(const container& values)
{
    std::string text;
    for (const auto& each : values) text += (text.empty() ? "" : ",") + rendered(each);
    return '(' + text + ')';
}

// Kind, items and keys of a map; "i" if it has the item, "n" if it has the key "name"; and for each lookup of the item
// "+" or "-" and its output, which was "?" before.
inline std::string answers(data_mapper4::map_collection& maps, const ustring8& map, const ustring8& item)
{
    ustring8 text = "?";
    std::vector<ustring8> list = {"?"};
    std::map<ustring8, ustring8> attribs = {{"?", "?"}};
    ustring8 attrib = "?";
    std::vector<std::map<ustring8, ustring8>> sets(1);
    std::string line = maps.map_type_as_string(maps.type(map)) + (maps.is_loaded(map) ? " " : " no ");
    line += rendered(maps.items(map)) + rendered(maps.keys(map));
    line += std::string(maps.has_item(map, item) ? " i" : " -") + (maps.has_key(map, "name") ? "n" : "-");
    const auto add = [&](bool is_found, const auto& output) { line += (is_found ? " +" : " -") + rendered(output); };
    add(maps.get_arg(map, item, text), text);
    add(maps.get_args(map, item, list), list);
    add(maps.get_attribs(map, item, attribs), attribs);
    add(maps.get_attrib(map, item, "x", attrib), attrib);
    add(maps.get_args_vector(map, item, sets), sets);
    return line;
}

// A file with a map of each kind. The maps' names begin with the prefix; each has the items "a" to "d", whose names and
// texts are too long to be stored without memory.
const std::string long_name = "a name that is too long to be stored without memory ";

inline std::string four_maps(const std::string& prefix)
{
    const std::string name = "name='" + long_name;
    std::string items[4];
    for (const std::string key : {"c", "a", "d", "b"}) {
        items[0] += "<item " + name + key + "'/><arg " + name + "&amp;'/>";
        items[1] += "<item " + name + key + "'/><arg " + name + "1'/><arg " + name + "2'/>";
        items[2] += "<item " + name + key + "' x='1'/>";
        items[3] += "<item " + name + key + "'/><arg " + name + "' x='1'/>";
    }
    const std::string kinds[] = {"map", "vector_map", "collection_map", "vector_collection_map"};
    std::string text = "<maps>";
    for (int i = 0; i < 4; ++i) {
        text += '<' + kinds[i] + " name='" + prefix + kinds[i] + "'>" + items[i] + "</" + kinds[i] + '>';
    }
    return text + "</maps>";
}

// The answers about the items "a" and "e", of which there is none, in all maps of the prefix.
inline std::string all_answers(data_mapper4::map_collection& maps, const std::string& prefix)
{
    std::string text;
    for (const auto& [name, kind] : maps.maps()) {
        if (name.rfind(prefix, 0) != 0) continue;
        text += name + answers(maps, name, long_name + "a") + answers(maps, name, long_name + "e") + '\n';
    }
    return text;
}

}  // namespace documents
