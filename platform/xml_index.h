// Internal: the index of a checked document, so that its text is scanned only once.
//
// The index is a list of 64-bit words: one for an element, then one for each of its attributes, then one for each
// stretch of text that belongs to its node. A stretch is what follows a tag, up to the next tag. Elements are in
// document order; a position is the number of a word, usually an element's.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/xml_cursor.h"
#include "platform/xml_element.h"

namespace NUVEK_2_18::parser {

// What follows a position. Only a hint: a value that is long or written oddly is not counted in value_bytes.
struct xml_run
{
    std::size_t elements = 0;
    std::size_t named = 0;  // elements whose tags are as long as the one that is looked for
    std::size_t attributes = 0;
    std::size_t value_bytes = 0;  // of the raw values
    std::size_t end = 0;          // a position
};

class xml_index
{
public:
    xml_index() = default;

    // An empty index for this text, which must not move. Throws std::length_error for a text of 1 TiB or more.
    explicit xml_index(std::string_view text);

    // Adds an element, or an attribute of the element that was added last.
    void add(xml_element::kind form, const char* begin, std::string_view tag);
    void add(const xml_attribute& attribute);

    // Adds a stretch of text to the element that was added last.
    void add_text(const char* begin);

    // Gets and sets the form of the element at the position.
    xml_element::kind form_at(std::size_t position) const;
    void set_form(std::size_t position, xml_element::kind form);

    // Removes everything from the position on.
    void cut(std::size_t position);

    // The position after the last element.
    std::size_t size() const { return m_words.size(); }

    // Where the element, attribute or stretch of text begins, and the name of the element or attribute.
    const char* begin_at(std::size_t position) const;
    std::string_view name_at(std::size_t position) const;

    // Counts the attributes of the element at the position, and returns the position of the next one.
    std::size_t skip(std::size_t position, std::size_t& attributes) const;

    // Reads the element at the position and returns the position of the next one. The element's stretches of text are
    // the words just before that.
    std::size_t read(std::size_t position, xml_element& element) const;

    // Measures the elements from the position on, up to the next opening or closing element, or until it has
    // read as many words as the limit. Does not touch the text.
    xml_run measure(std::size_t position, std::string_view tag, std::size_t limit) const;

private:
    using word = std::uint64_t;

    word begin_word(const char* begin, word kind) const;
    xml_attribute attribute_at(std::size_t position) const;
    std::string_view wide_name(const char* begin) const;
    xml_attribute wide_attribute(const char* begin, bool is_plain) const;
    xml_cursor cursor_at(const char* at) const;

    std::string_view m_text;
    std::vector<word> m_words;
};

}  // namespace NUVEK_2_18::parser
