// Internal: takes a document's text apart into markup, one construct a function.
//
// The scanner knows what each construct looks like, not where in a document it may stand. It owns nothing: the text
// must outlive it and what it hands out.
#pragma once

#include <string_view>
#include <vector>

#include "platform/ustring.h"
#include "platform/xml_stream_parser.h"

namespace NUVEK_2_18::parser {

class xml_scanner
{
public:
    using error_type = xml_stream_parser::error_type;

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

    // Where the text was cut because it could not be decoded further, `fault_at_end` is the fault to report there.
    explicit xml_scanner(std::string_view text, error_type fault_at_end = xml_stream_parser::no_error);

    // What stands at the cursor; takes nothing.
    construct ahead() const;
    bool at_declaration() const;

    // Each takes the construct that `ahead` names. True: the cursor stands behind it. False: a fault; fault() names it
    // and the cursor stands where it was found.
    bool take_declaration();
    bool take_start_tag();
    bool take_end_tag();
    bool take_text();  // a fault behind some text is left for the next call to find
    bool take_cdata();
    bool take_comment();
    bool take_instruction();
    bool take_doctype();
    bool take_blank();  // text where only white space may stand, up to the next `<`

    // What the last successful take found.
    std::string_view name() const { return m_name; }              // of a start or end tag
    bool is_empty_element() const { return m_is_empty_element; }  // of a start tag
    std::string_view content() const { return m_content; }        // of text or a CDATA section

    // The declared encoding, empty when there is none; set also when the declaration is faulty further on.
    std::string_view encoding() const { return m_encoding; }

    error_type fault() const { return m_fault; }
    const char* at() const { return m_at; }
    void go_to(const char* at) { m_at = at; }
    std::size_t position() const { return static_cast<std::size_t>(m_at - m_begin); }

private:
    bool fail(error_type code);
    bool stands(std::string_view literal) const;
    bool take(std::string_view literal);
    bool take_until(std::string_view terminator);
    bool take_space();
    bool need_space();
    bool take_name(std::string_view& name);
    bool take_equal();
    bool take_quoted(std::string_view& content, error_type unopened);
    bool take_setting(std::string_view name, bool (*is_valid)(std::string_view), std::string_view& value);
    bool take_attributes();
    bool take_value();
    bool take_reference();
    bool check_attributes();
    const std::string_view* find_repeated_among_few() const;
    const std::string_view* find_repeated();
    bool take_bracket();
    bool take_external_id();
    bool take_internal_subset();
    bool take_subset_part();
    bool take_markup_declaration();

    const char* m_begin;
    const char* m_at;
    const char* m_end;
    error_type m_fault_at_end;
    error_type m_fault = xml_stream_parser::no_error;
    std::string_view m_name;
    std::vector<std::string_view> m_attributes;  // the names
    std::vector<const std::string_view*> m_sorted;
    bool m_is_empty_element = false;
    std::string_view m_content;
    std::string_view m_encoding;
};

// Append what taken text, or a taken attribute value, stands for: references resolved, and in a value white space
// turned into spaces.
void append_text(std::string_view text, strings::ustring8& to);
void append_value(std::string_view value, strings::ustring8& to);

}  // namespace NUVEK_2_18::parser
