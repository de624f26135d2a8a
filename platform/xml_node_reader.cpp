#include "platform/xml_node_reader.h"

#include <algorithm>
#include <limits>

#include "platform/xml_characters.h"

namespace NUVEK_2_18::parser {

namespace {

using construct = xml_scanner::construct;

std::uint32_t limited(std::size_t number)
{
    return static_cast<std::uint32_t>(std::min<std::size_t>(number, std::numeric_limits<std::uint32_t>::max()));
}

}  // namespace

xml_node_reader::xml_node_reader(std::string_view sound_text) : m_text(sound_text), m_scanner(sound_text)
{
    if (m_scanner.at_declaration()) m_scanner.take_declaration();
}

xml_stream_parser::node xml_node_reader::read()
{
    return take_content(m_data) == construct::start_tag ? read_start() : read_end();
}

// An element without child elements is one node; whether it is shows only behind its text.
xml_stream_parser::node xml_node_reader::read_start()
{
    if (m_open.empty()) m_data = strings::ustring8();  // white space before the root
    node element;
    place(element);
    m_scanner.take_start_tag();
    element.tag = m_scanner.name();
    for (const xml_scanner::attribute& attribute : m_scanner.attributes()) {
        element.attributes.emplace_back(attribute.name, strings::ustring8());
        append_value(attribute.value, element.attributes.back().second);
    }
    if (m_scanner.is_empty_element()) return element;
    const construct next = take_content(element.data);
    if (is_space(element.data)) element.data.clear();
    if (next == construct::end_tag) {
        m_scanner.take_end_tag();
    } else {
        element.status = xml_stream_parser::incomplete;
        m_open.push_back(m_data.size());
    }
    return element;
}

xml_stream_parser::node xml_node_reader::read_end()
{
    node element;
    const std::size_t data_begin = m_open.back();
    m_open.pop_back();
    place(element);
    m_scanner.take_end_tag();
    element.closing = true;
    element.tag = m_scanner.name();
    const auto data = std::string_view(m_data).substr(data_begin);
    if (!is_space(data)) element.data = data;
    m_data.resize(data_begin);
    return element;
}

// Appends the text up to the next tag, and gives what stands there.
xml_scanner::construct xml_node_reader::take_content(strings::ustring8& data)
{
    for (;;) {
        const construct next = m_scanner.ahead();
        switch (next) {
            case construct::text:
                m_scanner.take_text();
                append_text(m_scanner.content(), data);
                break;
            case construct::cdata:
                m_scanner.take_cdata();
                data.append(m_scanner.content());
                break;
            case construct::comment:
                m_scanner.take_comment();
                break;
            case construct::instruction:
                m_scanner.take_instruction();
                break;
            case construct::doctype:
                m_scanner.take_doctype();
                break;
            case construct::start_tag:
            case construct::end_tag:
            case construct::end:
                return next;
        }
    }
}

// Fills in where the tag ahead stands.
void xml_node_reader::place(node& element)
{
    const std::size_t position = m_scanner.position();
    const std::string_view before = m_text.substr(0, position);
    for (std::size_t line_end; (line_end = before.find('\n', m_counted)) != std::string_view::npos;
         m_counted = m_line_begin) {
        m_line_begin = line_end + 1;
        ++m_line;
    }
    m_counted = position;
    element.line = m_line;
    element.column = limited(position - m_line_begin + 1);
    element.depth = limited(m_open.size());
}

}  // namespace NUVEK_2_18::parser
