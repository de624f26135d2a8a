// Internal: takes a document's text apart into markup, one construct a function.
//
// The functions know what each construct looks like, not where in a document it may be. Their results are views of the
// text. Success and faults are as in xml_cursor.h.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/xml_cursor.h"
#include "platform/xml_element.h"

namespace NUVEK_2_18::parser {

enum class construct
{
    start_tag,  // also anything else that begins with `<` and is none of the others
    end_tag,
    text,
    cdata,
    comment,
    instruction,
    doctype,
    end,
};

// What is at the cursor; takes nothing.
construct next_construct(const xml_cursor& cursor);

// Takes start tags. Keeps its memory from tag to tag: clearing it for each one made the `parse` benchmark a third
// slower.
class start_tag_reader
{
public:
    // Fills the element; its form is whole after `/>` and opening after `>`.
    bool take(xml_cursor& cursor, xml_element& element);

private:
    static bool take_value(xml_cursor& cursor, xml_value& value);
    bool take_attributes(xml_cursor& cursor, xml_element& element);
    void note_name(const xml_element& element, std::string_view name);
    bool check_names(xml_cursor& cursor, const xml_element& element);
    const char* find_repeated_name(const std::vector<xml_attribute>& attributes);

    // One bit for each name in the tag: names that are the same have the same bit.
    std::uint64_t m_name_bits = 0;
    const char* m_repeated_name = nullptr;  // the first that repeats an earlier one
    bool m_may_repeat = false;              // there are many names, and some of them have the same bit
    std::vector<std::string_view> m_sorted;
};

bool take_end_tag(xml_cursor& cursor, std::string_view& name);

// Takes character data with its references. `is_blank` becomes false if it is not all white space. A fault that follows
// some text is left for the next call to find.
bool take_text(xml_cursor& cursor, bool& is_blank);

bool take_cdata(xml_cursor& cursor, std::string_view& content);
bool take_comment(xml_cursor& cursor);
bool take_instruction(xml_cursor& cursor);

// Appends the text of a checked document from a place after a tag up to the next tag: character data and CDATA
// sections, without what is between them.
void append_content(std::string_view rest, strings::ustring8& to);

}  // namespace NUVEK_2_18::parser
