// A second opinion on a document: what expat finds in it, as the nodes that xml_stream_parser.h describes.
#pragma once

#include <expat.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/xml_stream_parser.h"

namespace expat_nodes {

using NUVEK_2_18::parser::xml_stream_parser;
using node = xml_stream_parser::node;

struct reading
{
    XML_Parser parser = nullptr;  // only while the document is read
    XML_Error error = XML_ERROR_NONE;
    std::size_t error_byte = 0;  // where expat stopped
    std::vector<node> nodes;     // columns count characters
    // The elements open at the end of the input: the index of the start node, and the text after the first child.
    std::vector<std::pair<std::size_t, std::string>> open;
    std::string version = "1.0";  // as in the XML declaration
    std::string encoding;
    bool has_doctype = false;
    bool is_in_doctype = false;  // expat stopped there

    bool is_accepted() const { return error == XML_ERROR_NONE; }
    // Whether the input ended between two constructs with an element open.
    bool is_incomplete() const { return error == XML_ERROR_NO_ELEMENTS && !open.empty(); }
};

inline reading& reading_of(void* data)
{
    return *static_cast<reading*>(data);
}

inline node& add(reading& to, const char* tag)
{
    node& added = to.nodes.emplace_back();
    added.tag = tag;
    added.line = XML_GetCurrentLineNumber(to.parser);
    added.column = static_cast<std::uint32_t>(XML_GetCurrentColumnNumber(to.parser) + 1);
    added.depth = static_cast<std::uint32_t>(to.open.size());
    return added;
}

inline void start(void* data, const char* tag, const char** attributes)
{
    reading& to = reading_of(data);
    if (!to.open.empty()) to.nodes[to.open.back().first].status = xml_stream_parser::incomplete;
    node& added = add(to, tag);
    const int given = XML_GetSpecifiedAttributeCount(to.parser);
    for (int i = 0; i < given; i += 2) added.attributes.emplace_back(attributes[i], attributes[i + 1]);
    to.open.push_back({to.nodes.size() - 1, {}});
}

inline void end(void* data, const char* tag)
{
    reading& to = reading_of(data);
    const auto [started, tail] = std::move(to.open.back());
    to.open.pop_back();
    if (to.nodes[started].status == xml_stream_parser::no_error) return;
    node& added = add(to, tag);
    added.closing = true;
    added.data = tail;
}

inline void text(void* data, const char* characters, int size)
{
    reading& to = reading_of(data);
    if (to.open.empty()) return;
    node& started = to.nodes[to.open.back().first];
    std::string& all = started.status == xml_stream_parser::no_error ? started.data : to.open.back().second;
    all.append(characters, static_cast<std::size_t>(size));
}

// `encoding` overrides the XML declaration; if it is null, expat detects the encoding.
inline reading read(std::string_view bytes, const char* encoding = nullptr)
{
    reading result;
    result.parser = XML_ParserCreate(encoding);
    XML_SetHashSalt(result.parser, 1);
    XML_SetUserData(result.parser, &result);
    XML_SetElementHandler(result.parser, start, end);
    XML_SetCharacterDataHandler(result.parser, text);
    XML_SetXmlDeclHandler(result.parser, [](void* data, const char* version, const char* encoding_name, int) {
        if (version != nullptr) reading_of(data).version = version;
        if (encoding_name != nullptr) reading_of(data).encoding = encoding_name;
    });
    XML_SetStartDoctypeDeclHandler(result.parser, [](void* data, const char*, const char*, const char*, int) {
        reading_of(data).has_doctype = reading_of(data).is_in_doctype = true;
    });
    XML_SetEndDoctypeDeclHandler(result.parser, [](void* data) { reading_of(data).is_in_doctype = false; });
    if (XML_Parse(result.parser, bytes.data(), static_cast<int>(bytes.size()), 1) != XML_STATUS_OK) {
        result.error = XML_GetErrorCode(result.parser);
        result.error_byte = static_cast<std::size_t>(XML_GetCurrentByteIndex(result.parser));
    }
    XML_ParserFree(result.parser);
    for (const auto& each : result.open) result.nodes[each.first].status = xml_stream_parser::incomplete;
    for (node& each : result.nodes) {
        if (each.data.find_first_not_of(" \t\r\n") == std::string::npos) each.data.clear();
    }
    return result;
}

}  // namespace expat_nodes
