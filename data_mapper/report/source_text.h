// Internal: lines and columns in a document's text, and pieces of its lines.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "platform/ustring.h"

namespace data_mapper4 {

using NUVEK_2_18::strings::ustring8;

// Both counted from 1; columns in code points.
struct text_position
{
    std::size_t line = 1;
    std::size_t column = 1;
};

// A piece of a line.
struct text_window
{
    ustring8 text;
    std::size_t column = 1;  // of its first character
};

class source_text
{
public:
    // The text is UTF-8 and must outlive this object.
    explicit source_text(std::string_view text) : m_text(text), m_marks(1) {}

    // The position of a byte, or of the end. Cost: linear in the text between the byte and the last one asked for, if it
    // follows that; otherwise in the size of a block.
    text_position position_of(std::size_t byte);

    // The line around a byte, cut to at most 160 code points.
    text_window window_around(std::size_t byte);

private:
    struct mark
    {
        std::size_t byte = 0;
        text_position position = {};
    };

    void advance(mark& to, std::size_t byte) const;

    std::string_view m_text;
    std::vector<mark> m_marks;  // one for each block of text, as far as it was read
    mark m_last;
};

}  // namespace data_mapper4
