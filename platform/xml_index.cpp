#include "platform/xml_index.h"

#include <algorithm>
#include <stdexcept>

#include "platform/byte_runs.h"

namespace NUVEK_2_18::parser {

namespace {

using word = std::uint64_t;

// The parts of a word, lowest first: the offset in the text, the kind, and the sizes.
constexpr unsigned begin_bits = 40;
constexpr unsigned kind_bits = 3;
constexpr unsigned name_shift = begin_bits + kind_bits;

// An element has one size, that of its name. The limit means that the name is too long for it.
constexpr word element_limit = (word{1} << (64 - name_shift)) - 1;

// An attribute has three sizes: of its name, of what is between name and value besides an equals sign and a quote, and
// of its value. An attribute whose sizes do not fit is wide: it is scanned again in the text.
constexpr unsigned name_bits = 6;
constexpr unsigned gap_bits = 2;
constexpr unsigned gap_shift = name_shift + name_bits;
constexpr unsigned value_shift = gap_shift + gap_bits;
constexpr unsigned value_bits = 64 - value_shift;
constexpr std::size_t least_gap = 2;

// The kinds of words. An element's kind is its form. The kind of an attribute whose value is not plain is one more.
constexpr word text_kind = 3;
constexpr word attribute_kind = 4;
constexpr word wide_kind = 6;

word bits(word from, unsigned shift, unsigned size)
{
    return from >> shift & ((word{1} << size) - 1);
}

word kind_of(word from)
{
    return bits(from, begin_bits, kind_bits);
}

std::size_t begin_of(word from)
{
    return static_cast<std::size_t>(bits(from, 0, begin_bits));
}

std::size_t size_of(word from, unsigned shift, unsigned size)
{
    return static_cast<std::size_t>(bits(from, shift, size));
}

}  // namespace

xml_index::xml_index(std::string_view text) : m_text(text)
{
    if (bits(text.size(), begin_bits, 64 - begin_bits) != 0) throw std::length_error("a document of 1 TiB or more");
    // Enough for most files of maps: half the size of their text. Not in proportion to huge texts, which are mostly values.
    m_words.reserve(std::min<std::size_t>(text.size() / 16, 1U << 23));
}

word xml_index::begin_word(const char* begin, word kind) const
{
    return static_cast<word>(begin - m_text.data()) | kind << begin_bits;
}

xml_cursor xml_index::cursor_at(const char* at) const
{
    return xml_cursor(view(at, m_text.data() + m_text.size()));
}

void xml_index::add(xml_element::kind form, const char* begin, std::string_view tag)
{
    const word size = std::min<word>(tag.size(), element_limit);
    m_words.push_back(begin_word(begin, static_cast<word>(form)) | size << name_shift);
}

void xml_index::add(const xml_attribute& attribute)
{
    const auto& [name, value] = attribute;
    const auto gap = static_cast<std::size_t>(value.raw.data() - name.data()) - name.size() - least_gap;
    const bool is_wide = (name.size() >> name_bits | gap >> gap_bits | value.raw.size() >> value_bits) != 0;
    const word kind = (is_wide ? wide_kind : attribute_kind) + (value.is_plain ? 0U : 1U);
    const word sizes = word{name.size()} << name_shift | word{gap} << gap_shift | word{value.raw.size()} << value_shift;
    m_words.push_back(begin_word(name.data(), kind) | (is_wide ? 0 : sizes));
}

void xml_index::cut(std::size_t position)
{
    m_words.resize(position);
}

void xml_index::add_text(const char* begin)
{
    m_words.push_back(begin_word(begin, text_kind));
}

xml_element::kind xml_index::form_at(std::size_t position) const
{
    return static_cast<xml_element::kind>(kind_of(m_words[position]));
}

void xml_index::set_form(std::size_t position, xml_element::kind form)
{
    word& head = m_words[position];
    head ^= (kind_of(head) ^ static_cast<word>(form)) << begin_bits;
}

const char* xml_index::begin_at(std::size_t position) const
{
    return m_text.data() + begin_of(m_words[position]);
}

std::string_view xml_index::name_at(std::size_t position) const
{
    const word head = m_words[position];
    const char* begin = begin_at(position);
    if (kind_of(head) >= wide_kind) return wide_name(begin);
    if (kind_of(head) >= attribute_kind) return {begin, size_of(head, name_shift, name_bits)};
    begin += kind_of(head) == static_cast<word>(xml_element::kind::closing) ? 2 : 1;
    const auto size = static_cast<std::size_t>(head >> name_shift);
    return size == element_limit ? wide_name(begin) : std::string_view(begin, size);
}

std::string_view xml_index::wide_name(const char* begin) const
{
    std::string_view name;
    cursor_at(begin).take_name(name);
    return name;
}

std::size_t xml_index::skip(std::size_t position, std::size_t& attributes) const
{
    const std::size_t begin = position + 1;
    const std::size_t end = m_words.size();
    for (position = begin; position != end && kind_of(m_words[position]) >= attribute_kind;) ++position;
    attributes = position - begin;
    while (position != end && kind_of(m_words[position]) == text_kind) ++position;
    return position;
}

std::size_t xml_index::read(std::size_t position, xml_element& element) const
{
    element.form = form_at(position);
    element.begin = begin_at(position);
    element.tag = name_at(position);
    element.attributes.clear();
    element.texts = 0;
    const std::size_t end = m_words.size();
    for (++position; position != end && kind_of(m_words[position]) >= attribute_kind; ++position) {
        element.attributes.push_back(attribute_at(position));
    }
    for (; position != end && kind_of(m_words[position]) == text_kind; ++position) ++element.texts;
    return position;
}

xml_run xml_index::measure(std::size_t position, std::string_view tag, std::size_t limit) const
{
    xml_run run;
    const std::size_t begin = position;
    const std::size_t end = position + std::min(limit, m_words.size() - position);
    for (; position != end; ++position) {
        const word head = m_words[position];
        const word kind = kind_of(head);
        if (kind == attribute_kind || kind == attribute_kind + 1) {
            ++run.attributes;
            run.value_bytes += static_cast<std::size_t>(head >> value_shift);
        } else if (kind == static_cast<word>(xml_element::kind::whole)) {
            ++run.elements;
            if (head >> name_shift == tag.size()) ++run.named;
        } else if (kind < text_kind && position != begin) {
            break;
        }
    }
    run.end = position;
    return run;
}

xml_attribute xml_index::attribute_at(std::size_t position) const
{
    const word head = m_words[position];
    const word kind = kind_of(head);
    const char* const name = begin_at(position);
    if (kind >= wide_kind) return wide_attribute(name, kind == wide_kind);
    const std::size_t size = size_of(head, name_shift, name_bits);
    const char* const value = name + size + size_of(head, gap_shift, gap_bits) + least_gap;
    return {{name, size}, {{value, static_cast<std::size_t>(head >> value_shift)}, kind == attribute_kind}};
}

xml_attribute xml_index::wide_attribute(const char* begin, bool is_plain) const
{
    xml_attribute attribute;
    attribute.value.is_plain = is_plain;
    xml_cursor cursor = cursor_at(begin);
    cursor.take_name(attribute.name);
    cursor.take_equal();
    cursor.take_quoted(attribute.value.raw, xml_fault::missing_quote);
    return attribute;
}

}  // namespace NUVEK_2_18::parser
