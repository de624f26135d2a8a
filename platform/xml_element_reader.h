// Internal: takes the elements out of a checked text, one at a time.
//
// What was checked need not be checked again: the reader looks for no more than where things end.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "platform/xml_element.h"

namespace NUVEK_2_18::parser {

class xml_element_reader
{
public:
    // A place in the text between two elements.
    struct place
    {
        const char* at;
        std::size_t depth;
    };

    xml_element_reader() = default;

    // The text must outlive the reader, hold sound constructs only, and have zero bytes behind it as a text_buffer's
    // has. `has_mixed_text`: text other than white space stands behind a child element somewhere.
    xml_element_reader(std::string_view sound_text, bool has_mixed_text);

    // Takes the next element; there are as many as check_document counted.
    void read(xml_element& element);

    // The text of the element read last, where it has data.
    strings::ustring8& data() { return m_data; }

    // How many elements are open around the element read last.
    std::size_t depth() const { return m_depth; }

    // Where the element read last begins, which is a whole one, and going back there: the next one read is that one
    // again. Only for a text without mixed text.
    place place_of(const xml_element& element) const { return {element.begin, m_depth}; }
    void go_to(place there);

    // The line of a place in the text, from 1. Places must be asked for in their order.
    unsigned long line_of(const char* at);

    // The column, in bytes from 1, of the place whose line was asked for last.
    std::size_t column() const { return static_cast<std::size_t>(m_counted - m_line_begin) + 1; }

private:
    void read_start(xml_element& element);
    void read_end(xml_element& element);
    void read_attributes(xml_element& element);
    bool read_data();
    void take_content(strings::ustring8* to);
    void take_other(strings::ustring8* to);

    const char* m_at = nullptr;
    const char* m_end = nullptr;
    bool m_has_mixed_text = false;
    std::size_t m_depth = 0;  // of the element read last
    std::size_t m_open = 0;   // open elements at m_at
    strings::ustring8 m_data;

    // With mixed text: what stands behind a child in the elements that are open, innermost last, and where each one's
    // part begins.
    strings::ustring8 m_behind;
    std::vector<std::size_t> m_parts;

    // How far lines were counted.
    const char* m_counted = nullptr;
    unsigned long m_line = 1;
    const char* m_line_begin = nullptr;
};

}  // namespace NUVEK_2_18::parser
