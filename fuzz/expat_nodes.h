// What expat makes of a document, as the nodes that xml_stream_parser.h describes: a second reading of the same bytes.
#pragma once

#include <expat.h>

#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "platform/xml_stream_parser.h"

namespace expat_nodes {

using NUVEK_2_18::parser::xml_stream_parser;

struct reading
{
    XML_Error error = XML_ERROR_NONE;
    std::size_t error_byte = 0;                  // where expat stopped
    std::vector<xml_stream_parser::node> nodes;  // columns count characters
    std::size_t open = 0;                        // elements open at the end
    std::string version = "1.0";                 // as the XML header has it
    std::string encoding;
    bool has_doctype = false;
    bool has_attribute_types = false;
    bool is_in_doctype = false;  // expat stopped there

    bool is_accepted() const { return error == XML_ERROR_NONE; }
    // The input ended between constructs, with an element open.
    bool is_incomplete() const { return error == XML_ERROR_NO_ELEMENTS && open != 0; }
};

class reader
{
public:
    reading read(std::string_view bytes)
    {
        XML_SetHashSalt(m_parser.get(), 1);
        XML_SetUserData(m_parser.get(), this);
        XML_SetElementHandler(m_parser.get(), start, end);
        XML_SetCharacterDataHandler(m_parser.get(), text);
        XML_SetXmlDeclHandler(m_parser.get(), header);
        XML_SetDoctypeDeclHandler(m_parser.get(), start_doctype, end_doctype);
        XML_SetAttlistDeclHandler(m_parser.get(), attribute_type);
        if (XML_Parse(m_parser.get(), bytes.data(), static_cast<int>(bytes.size()), 1) != XML_STATUS_OK) {
            m_reading.error = XML_GetErrorCode(m_parser.get());
            m_reading.error_byte = static_cast<std::size_t>(XML_GetCurrentByteIndex(m_parser.get()));
        }
        m_reading.open = m_open.size();
        for (const open_element& each : m_open) m_reading.nodes[each.node].status = xml_stream_parser::incomplete;
        for (xml_stream_parser::node& each : m_reading.nodes) {
            if (each.data.find_first_not_of(" \t\r\n") == std::string::npos) each.data.clear();
        }
        return std::move(m_reading);
    }

private:
    struct open_element
    {
        std::size_t node;  // where its start node stands
        bool has_child;
        std::string tail;  // the text behind its first child
    };

    static reader& self(void* data) { return *static_cast<reader*>(data); }

    xml_stream_parser::node& add(const char* tag)
    {
        xml_stream_parser::node& node = m_reading.nodes.emplace_back();
        node.tag = tag;
        node.line = XML_GetCurrentLineNumber(m_parser.get());
        node.column = static_cast<std::uint32_t>(XML_GetCurrentColumnNumber(m_parser.get()) + 1);
        node.depth = static_cast<std::uint32_t>(m_open.size());
        return node;
    }

    static void start(void* data, const char* tag, const char** attributes)
    {
        reader& me = self(data);
        if (!me.m_open.empty()) {
            me.m_open.back().has_child = true;
            me.m_reading.nodes[me.m_open.back().node].status = xml_stream_parser::incomplete;
        }
        xml_stream_parser::node& node = me.add(tag);
        const int given = XML_GetSpecifiedAttributeCount(me.m_parser.get());
        for (int i = 0; i < given; i += 2) node.attributes.emplace_back(attributes[i], attributes[i + 1]);
        me.m_open.push_back({me.m_reading.nodes.size() - 1, false, {}});
    }

    static void end(void* data, const char* tag)
    {
        reader& me = self(data);
        const open_element closed = std::move(me.m_open.back());
        me.m_open.pop_back();
        if (!closed.has_child) return;
        xml_stream_parser::node& node = me.add(tag);
        node.closing = true;
        node.data = closed.tail;
    }

    static void text(void* data, const char* characters, int size)
    {
        reader& me = self(data);
        if (me.m_open.empty()) return;
        open_element& element = me.m_open.back();
        std::string& to = element.has_child ? element.tail : me.m_reading.nodes[element.node].data;
        to.append(characters, static_cast<std::size_t>(size));
    }

    static void header(void* data, const char* version, const char* encoding, int /*standalone*/)
    {
        if (version != nullptr) self(data).m_reading.version = version;
        if (encoding != nullptr) self(data).m_reading.encoding = encoding;
    }

    static void start_doctype(void* data, const char* /*name*/, const char* /*system*/, const char* /*id*/,
                              int /*subset*/)
    {
        self(data).m_reading.has_doctype = true;
        self(data).m_reading.is_in_doctype = true;
    }

    static void end_doctype(void* data) { self(data).m_reading.is_in_doctype = false; }

    static void attribute_type(void* data, const char* /*element*/, const char* /*attribute*/, const char* /*type*/,
                               const char* /*value*/, int /*required*/)
    {
        self(data).m_reading.has_attribute_types = true;
    }

    struct freeing
    {
        void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
    };

    std::unique_ptr<std::remove_pointer_t<XML_Parser>, freeing> m_parser{XML_ParserCreate(nullptr)};
    reading m_reading;
    std::vector<open_element> m_open;
};

}  // namespace expat_nodes
