// Documents for the tests: written to a folder of their own, and what became of them rendered as one line of text.
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
#include "platform/xml_stream_parser.h"

namespace documents {

using NUVEK_2_18::parser::xml_stream_parser;

// A new folder that goes with its object.
class folder
{
public:
    folder()
        : m_path(std::filesystem::temp_directory_path() / ("data_mapper4-" + std::to_string(std::random_device()())))
    {
        std::filesystem::create_directory(m_path);
    }
    ~folder() { std::filesystem::remove_all(m_path); }

    // Makes the folders that the name's slashes ask for, too.
    void write(const std::string& name, std::string_view content) const
    {
        std::filesystem::create_directories((m_path / name).parent_path());
        std::ofstream(m_path / name, std::ios::binary) << content;
    }

    // The path of a file in the folder, as a host would write it: with backslashes, whatever the system.
    std::wstring path(const std::string& name) const
    {
        std::wstring result = (m_path / name).wstring();
        std::replace(result.begin(), result.end(), L'/', L'\\');
        return result;
    }
    std::filesystem::path system_path(const std::string& name) const { return m_path / name; }

private:
    std::filesystem::path m_path;
};

// Inputs that all come to the same.
struct group
{
    const char* expected;
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

// A parser that has parsed a document.
inline std::unique_ptr<xml_stream_parser> parsed(std::string_view document, unsigned int options = 2)
{
    const folder home;
    home.write("document", document);
    auto parser = std::make_unique<xml_stream_parser>(units(home.path("document")), options);
    parser->parse();
    return parser;
}

// The nodes left in the queue. "a+" is a start node, "/a" a closing node, "a" an element in one node; behind it "@" and
// the line, the attributes in brackets and the data in quotes. Control characters are escaped.
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

// Code and error line, and the nodes: "end_of_file 0: a@1".
inline std::string outcome(std::string_view document)
{
    const auto parser = parsed(document);
    const std::string code = data_mapper4::parse_error_as_string(parser->error());
    return code + ' ' + std::to_string(parser->error_line()) + ": " + nodes(*parser);
}

}  // namespace documents
