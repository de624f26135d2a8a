// Internal: where everything is in a checked document, so that its text is scanned only once.
//
// The index is a list of 64-bit words: one for an element, then one for each of its attributes, then one for each
// stretch of text that belongs to its node. A stretch is what follows a tag, up to the next tag. Elements are in document
// order; a position in the index is the number of an element's word.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/xml_cursor.h"
#include "platform/xml_element.h"

namespace NUVEK_2_18::parser {

class xml_index
{
public:
    xml_index() = default;

    // The index of this text, which must stay where it is. Throws std::length_error for a text of 1 TiB or more.
    explicit xml_index(std::string_view text);

    // Adds the element and its attributes, all of them views of the text.
    void add(const xml_element& element);

    // Adds a stretch of text to the element that was added last.
    void add_text(const char* begin);

    // Changes the form of an element that is in the index.
    void set_form(std::size_t position, xml_element::kind form);

    // The position after the last element.
    std::size_t size() const { return m_words.size(); }

    // Where the element at the position begins, and its tag.
    const char* begin_at(std::size_t position) const;
    std::string_view tag_at(std::size_t position) const;

    // Reads the element at the position, and gives that of the next one. The element's stretches of text are the words
    // before the latter; begin_at() says where each begins.
    std::size_t read(std::size_t position, xml_element& element) const;

private:
    using word = std::uint64_t;

    word begin_word(const char* begin, unsigned kind) const;
    void add_attribute(const xml_attribute& attribute);
    xml_attribute attribute_at(std::size_t position) const;
    xml_cursor cursor_at(const char* at) const;

    std::string_view m_text;
    std::vector<word> m_words;
};

}  // namespace NUVEK_2_18::parser
