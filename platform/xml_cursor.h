// Internal: a place in a document's text, and the small pieces that markup is made of.
//
// Each take function takes one piece. It returns true if the piece was there; the cursor is then after it. Otherwise it
// returns false: fault() says what is wrong, and the cursor is where the fault was found.
#pragma once

#include <cstddef>
#include <string_view>

#include "platform/byte_runs.h"
#include "platform/xml_characters.h"
#include "platform/xml_fault.h"

namespace NUVEK_2_18::parser {

class xml_cursor
{
public:
    // The text must outlive the cursor and be followed by zero bytes, as it is in a text_buffer: no production of XML
    // matches a zero byte, so no scan needs to check for the end. If the text ends where decoding failed,
    // `fault_at_end` is the fault to report there.
    explicit xml_cursor(std::string_view text, xml_fault fault_at_end = xml_fault::none)
        : m_at(text.data()), m_end(m_at + text.size()), m_fault_at_end(fault_at_end)
    {
    }

    const char* at() const { return m_at; }
    void go_to(const char* at) { m_at = at; }
    void skip(std::size_t bytes) { m_at += bytes; }
    char operator*() const { return *m_at; }
    bool is_at_end() const { return m_at == m_end; }
    xml_fault fault() const { return m_fault; }

    // Sets the fault and returns false. At the end of the text, the text's own fault takes precedence if it has one;
    // otherwise what is unexpected there is the end.
    bool fail(xml_fault fault);
    bool fail_at(const char* at, xml_fault fault)
    {
        m_at = at;
        return fail(fault);
    }

    bool sees(std::string_view literal) const;
    bool take(std::string_view literal, xml_fault missing = xml_fault::unexpected_character);

    // Takes everything up to and including the terminator. Sets `content` to what precedes it.
    bool take_until(std::string_view terminator, std::string_view& content);

    // S? and S
    void skip_space()
    {
        const char* at = m_at;  // a local, because the compiler would store the member for every character
        while (is_space(*at)) ++at;
        m_at = at;
    }
    bool take_space();

    // Name = NameStartChar NameChar*
    bool take_name(std::string_view& name)
    {
        const char* const begin = m_at;
        if (is_byte(*begin, name_start_byte)) m_at = skip_name_bytes(begin + 1);
        if (is_non_ascii(*m_at)) skip_non_ascii_name(begin);
        name = view(begin, m_at);
        return m_at != begin || fail(xml_fault::bad_name);
    }

    // Eq = S? '=' S?
    bool take_equal()
    {
        skip_space();
        if (*m_at != '=') return fail(is_at_end() ? xml_fault::unexpected_character : xml_fault::missing_equal);
        ++m_at;
        skip_space();
        return true;
    }

    // Takes a literal in either kind of quotes; its content is not checked. `missing` is the fault if a quote is
    // missing.
    bool take_quoted(std::string_view& content, xml_fault missing);

private:
    void skip_non_ascii_name(const char* begin);

    const char* m_at;
    const char* m_end;
    xml_fault m_fault_at_end;
    xml_fault m_fault = xml_fault::none;
};

}  // namespace NUVEK_2_18::parser
