#include "platform/xml_cursor.h"

#include <cstring>

#include "platform/unicode.h"

namespace NUVEK_2_18::parser {

bool xml_cursor::fail(xml_fault fault)
{
    m_fault = fault;
    if (is_at_end() && fault >= xml_fault::unexpected_character) m_fault = xml_fault::end_inside_markup;
    if (is_at_end() && m_fault_at_end != xml_fault::none) m_fault = m_fault_at_end;
    return false;
}

bool xml_cursor::sees(std::string_view literal) const
{
    return std::strncmp(m_at, literal.data(), literal.size()) == 0;
}

bool xml_cursor::take(std::string_view literal, xml_fault missing)
{
    if (!sees(literal)) return fail(missing);
    m_at += literal.size();
    return true;
}

bool xml_cursor::take_until(std::string_view terminator, std::string_view& content)
{
    const std::string_view rest = view(m_at, m_end);
    content = rest.substr(0, rest.find(terminator));
    m_at += content.size();
    return take(terminator);
}

bool xml_cursor::take_space()
{
    const char* const begin = m_at;
    skip_space();
    return m_at != begin || fail(xml_fault::missing_space);
}

// Skips the rest of a name, from its first non-ASCII character on.
void xml_cursor::skip_non_ascii_name(const char* begin)
{
    while (is_non_ascii(*m_at)) {
        const char* next = m_at;
        const char32_t code_point = unicode::take_utf8(next, m_end);
        if (!(m_at == begin ? is_name_start(code_point) : is_name(code_point))) break;
        m_at = skip_name_bytes(next);
    }
}

bool xml_cursor::take_quoted(std::string_view& content, xml_fault missing)
{
    if (*m_at != '"' && *m_at != '\'') return fail(missing);
    const char* const begin = m_at + 1;
    const auto* const close =
        static_cast<const char*>(std::memchr(begin, *m_at, static_cast<std::size_t>(m_end - begin)));
    if (close == nullptr) return fail_at(m_end, missing);
    content = view(begin, close);
    m_at = close + 1;
    return true;
}

}  // namespace NUVEK_2_18::parser
