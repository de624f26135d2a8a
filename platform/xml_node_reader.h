// Internal: makes the nodes of a checked text, one at a time.
#pragma once

#include <string_view>
#include <vector>

#include "platform/xml_scanner.h"

namespace NUVEK_2_18::parser {

class xml_node_reader
{
public:
    // The text must outlive the reader and hold sound constructs only: what check_document found sound.
    explicit xml_node_reader(std::string_view sound_text);

    // The next node; there are as many as check_document counted.
    xml_stream_parser::node read();

private:
    using node = xml_stream_parser::node;

    node read_start();
    node read_end();
    xml_scanner::construct take_content(strings::ustring8& data);
    void place(node& element);

    std::string_view m_text;
    xml_scanner m_scanner;

    // What stands behind a child in the elements that are open, innermost last, and where each one's part begins.
    strings::ustring8 m_data;
    std::vector<std::size_t> m_open;

    // How far lines were counted.
    std::size_t m_counted = 0;
    unsigned long m_line = 1;
    std::size_t m_line_begin = 0;
};

}  // namespace NUVEK_2_18::parser
