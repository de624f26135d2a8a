// Internal: the constructs of markup, one function for each.
//
// The functions know what each construct looks like, not where in a document it may occur. Their results are views into
// the text. They report success and faults as in xml_cursor.h.
#pragma once

#include <string_view>

#include "platform/ustring.h"
#include "platform/xml_cursor.h"
#include "platform/xml_index.h"

namespace NUVEK_2_18::parser {

enum class construct
{
    start_tag,  // or anything else that begins with `<` and is none of the others
    end_tag,
    text,
    cdata,
    comment,
    instruction,
    doctype,
    end,
};

construct construct_after_exclamation_mark(const xml_cursor& cursor);

// Returns what is at the cursor; takes nothing.
inline construct next_construct(const xml_cursor& cursor)
{
    if (*cursor != '<') return cursor.is_at_end() ? construct::end : construct::text;
    const char next = cursor.at()[1];
    if (next == '/') return construct::end_tag;
    if (next == '?') return construct::instruction;
    return next == '!' ? construct_after_exclamation_mark(cursor) : construct::start_tag;
}

// Takes a start tag and adds its element to the index: as whole if the tag ends in `/>`, as opening if it ends in `>`.
// Adds nothing if the tag is faulty.
bool take_start_tag(xml_cursor& cursor, xml_index& index);

bool take_end_tag(xml_cursor& cursor, std::string_view& name);

// Takes character data with its references. Sets `is_blank` to false if it is not all white space. Stops before a fault
// that follows some text; the next call reports it.
bool take_text(xml_cursor& cursor, bool& is_blank);

bool take_cdata(xml_cursor& cursor, std::string_view& content);
bool take_comment(xml_cursor& cursor);
bool take_instruction(xml_cursor& cursor);

// Character data, or a CDATA section.
struct text_run
{
    std::string_view raw;
    std::string_view content;  // of a CDATA section; empty for character data
    bool is_cdata = false;
    bool is_blank = true;  // is all white space
};

// Takes the next run of a checked document's text, and the comments and processing instructions before it. Returns false
// at a tag or at the end.
bool take_text_run(xml_cursor& cursor, text_run& run);

// Appends one stretch of a checked document's text: the character data and CDATA sections from a place after a tag to
// the next tag or the end, without the comments and processing instructions between them.
void append_content(std::string_view rest, strings::ustring8& to);

}  // namespace NUVEK_2_18::parser
