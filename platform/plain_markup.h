// Internal: the plain forms of markup, recognised fast.
//
// Nearly all markup of nearly all documents is plain: names in ASCII, values without references. What is recognised
// here is sound; what is not recognised is for xml_scanner to judge, from its beginning. The benchmark's rows "parse"
// pay for it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace NUVEK_2_18::parser {

struct plain_tag
{
    const char* end = nullptr;  // behind the tag; nullptr when it is not plain
    std::string_view name;
    bool is_empty_element = false;
};

// Names that must differ, each with its first bytes at hand. More of them than a tag has as a rule are for a method
// whose cost does not grow with their square.
class few_names
{
public:
    bool empty() const { return m_size == 0; }
    void clear()
    {
        m_size = 0;
        m_bits = 0;
    }

    // Adds a name; false when there is no room for it, or when it is one of the others.
    bool add(std::string_view name);

private:
    static constexpr std::size_t capacity = 8;

    struct entry
    {
        std::uint64_t first = 0;
        std::string_view name;
    };

    bool has(const entry& wanted) const;

    std::uint64_t m_bits = 0;
    std::size_t m_size = 0;
    entry m_entries[capacity];
};

// Keeps its memory from tag to tag: to clear it for each one would cost the row "parse" a third.
class plain_start_tag_finder
{
public:
    // The start tag at `at`, which is a `<`. It has no more than a handful of attributes, all of them different. The
    // text has zero bytes behind it, as a text_buffer's has.
    plain_tag find(const char* at);

private:
    few_names m_names;
};

// The place behind the end tag at `at`, which is a `</`, if it is that of the element of this name and holds nothing
// else; or else nullptr.
const char* find_plain_end_tag(const char* at, std::string_view name);

}  // namespace NUVEK_2_18::parser
