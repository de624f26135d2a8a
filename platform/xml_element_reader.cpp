#include "platform/xml_element_reader.h"

#include <algorithm>

#include "platform/byte_runs.h"
#include "platform/xml_characters.h"
#include "platform/xml_scanner.h"

namespace NUVEK_2_18::parser {

namespace {

// A name of checked text ends at the first ASCII character that no name holds.
const char* skip_name(const char* at)
{
    at = skip_name_bytes(at);
    while ((*at & 0x80) != 0) at = skip_name_bytes(at + 1);
    return at;
}

}  // namespace

xml_element_reader::xml_element_reader(std::string_view sound_text, bool has_mixed_text)
    : m_at(sound_text.data()),
      m_end(m_at + sound_text.size()),
      m_has_mixed_text(has_mixed_text),
      m_counted(m_at),
      m_line_begin(m_at)
{
}

void xml_element_reader::go_to(place there)
{
    m_at = there.at;
    m_open = there.depth;
}

void xml_element_reader::read(xml_element& element)
{
    if (!m_has_mixed_text) m_at = skip_space(m_at);
    if (*m_at != '<' || m_at[1] == '!' || m_at[1] == '?') {
        take_content(m_has_mixed_text && m_open != 0 ? &m_behind : nullptr);
    }
    element.begin = m_at;
    element.attributes.clear();
    element.has_data = false;
    element.line = 0;
    if (m_at[1] == '/') {
        read_end(element);
    } else {
        read_start(element);
    }
}

// An element without child elements is read whole; whether it has any shows only behind its text.
void xml_element_reader::read_start(xml_element& element)
{
    m_depth = m_open;
    element.tag = view(m_at + 1, skip_name(m_at + 1));
    m_at += 1 + element.tag.size();
    read_attributes(element);
    const bool is_empty_element = *m_at == '/';
    m_at += is_empty_element ? 2 : 1;
    element.form = xml_element::kind::whole;
    if (is_empty_element) return;
    if (*m_at != '<' || m_at[1] != '/') element.has_data = read_data();
    if (*m_at == '<' && m_at[1] == '/') {
        m_at = find_first(m_at, '>') + 1;
    } else {
        element.form = xml_element::kind::opening;
        ++m_open;
        if (m_has_mixed_text) m_parts.push_back(m_behind.size());
    }
}

void xml_element_reader::read_end(xml_element& element)
{
    m_depth = --m_open;
    element.form = xml_element::kind::closing;
    element.tag = view(m_at + 2, skip_name(m_at + 2));
    m_at = find_first(m_at, '>') + 1;
    if (!m_has_mixed_text) return;
    m_data.assign(m_behind, m_parts.back());
    m_behind.resize(m_parts.back());
    m_parts.pop_back();
    element.has_data = !is_space(m_data);
}

// Leaves the cursor at the tag's `>` or `/>`.
void xml_element_reader::read_attributes(xml_element& element)
{
    const char* at = m_at;
    for (;;) {
        at = skip_space(at);
        if (*at == '>' || *at == '/') break;
        const char* const name = at;
        at = skip_name(at);
        const std::string_view name_view = view(name, at);
        if (*at == '=') ++at;
        if (*at != '"' && *at != '\'') at = find_first(at, '"', '\'');
        const char quote = *at++;
        const char* const value = at;
        at = find_first(at, quote, '&', '\n', '\t');
        const bool is_plain = *at == quote;
        if (!is_plain) at = find_first(at, quote);
        element.attributes.push_back({name_view, {view(value, at), is_plain}});
        ++at;
    }
    m_at = at;
}

// The text behind a start tag, up to the next tag. True when it is not white space alone.
bool xml_element_reader::read_data()
{
    const char* const tag = skip_space(m_at);
    if (*tag == '<' && tag[1] != '!' && tag[1] != '?') {
        m_at = tag;
        return false;
    }
    m_data.clear();
    take_content(&m_data);
    return !is_space(m_data);
}

// Takes everything up to the next tag, and appends what of it is text.
void xml_element_reader::take_content(strings::ustring8* to)
{
    while (m_at != m_end) {
        const char* const begin = m_at;
        m_at = std::min(*m_at == '<' ? m_at : find_first(m_at, '<'), m_end);
        if (to != nullptr) append_text(view(begin, m_at), *to);
        if (m_at == m_end || (m_at[1] != '!' && m_at[1] != '?')) return;
        take_other(to);
    }
}

// Takes a comment, CDATA section, processing instruction or document type declaration.
void xml_element_reader::take_other(strings::ustring8* to)
{
    xml_scanner scanner(view(m_at, m_end));
    const xml_scanner::construct next = scanner.ahead();
    if (next == xml_scanner::construct::comment) {
        scanner.take_comment();
    } else if (next == xml_scanner::construct::cdata) {
        scanner.take_cdata();
        if (to != nullptr) to->append(scanner.content());
    } else if (next == xml_scanner::construct::doctype) {
        scanner.take_doctype();
    } else if (scanner.at_declaration()) {
        scanner.take_declaration();
    } else {
        scanner.take_instruction();
    }
    m_at += scanner.position();
}

unsigned long xml_element_reader::line_of(const char* at)
{
    const std::size_t lines = count_lines(m_counted, at);
    if (lines != 0) {
        m_line += static_cast<unsigned long>(lines);
        m_line_begin = at;
        while (m_line_begin[-1] != '\n') --m_line_begin;
    }
    m_counted = at;
    return m_line;
}

}  // namespace NUVEK_2_18::parser
