#include "platform/xml_index.h"

#include <algorithm>
#include <stdexcept>

#include "platform/byte_runs.h"

namespace NUVEK_2_18::parser {

namespace {

using word = std::uint64_t;

// A word: where the thing begins in the text, what it is, and its sizes.
constexpr unsigned begin_bits = 40;
constexpr unsigned kind_bits = 3;
constexpr unsigned name_shift = begin_bits + kind_bits;

// An element's size is that of its name, or the limit if its name is not that short.
constexpr word element_limit = (word{1} << (64 - name_shift)) - 1;

// An attribute's sizes: its name, what is between name and value besides an equals sign and a quote, and its value. An
// attribute that they do not fit is wide: its sizes are found again in the text.
constexpr unsigned name_bits = 6;
constexpr unsigned gap_bits = 2;
constexpr unsigned gap_shift = name_shift + name_bits;
constexpr unsigned value_shift = gap_shift + gap_bits;
constexpr unsigned value_bits = 64 - value_shift;
constexpr std::size_t least_gap = 2;

enum class word_kind : unsigned
{
    whole,
    opening,
    closing,
    text,
    attribute,
    unnormalised_attribute,
    wide_attribute,
    unnormalised_wide_attribute,
};

word bits(word from, unsigned shift, unsigned size)
{
    return from >> shift & ((word{1} << size) - 1);
}

word_kind kind_of(word from)
{
    return static_cast<word_kind>(bits(from, begin_bits, kind_bits));
}

bool is_attribute(word from)
{
    return kind_of(from) >= word_kind::attribute;
}

std::size_t begin_of(word from)
{
    return static_cast<std::size_t>(bits(from, 0, begin_bits));
}

// How many characters precede an element's name: `<` or `</`.
std::size_t name_offset(word_kind kind)
{
    return kind == word_kind::closing ? 2 : 1;
}

}  // namespace

xml_index::xml_index(std::string_view text) : m_text(text)
{
    if (bits(text.size(), begin_bits, 64 - begin_bits) != 0) throw std::length_error("a document of 1 TiB or more");
    // What most files of maps need: half the size of their text.
    m_words.reserve(text.size() / 16);
}

word xml_index::begin_word(const char* begin, unsigned kind) const
{
    return static_cast<word>(begin - m_text.data()) | word{kind} << begin_bits;
}

xml_cursor xml_index::cursor_at(const char* at) const
{
    return xml_cursor(view(at, m_text.data() + m_text.size()));
}

void xml_index::add(const xml_element& element)
{
    const word size = std::min<word>(element.tag.size(), element_limit);
    m_words.push_back(begin_word(element.begin, static_cast<unsigned>(element.form)) | size << name_shift);
    for (const xml_attribute& each : element.attributes) add_attribute(each);
}

void xml_index::add_attribute(const xml_attribute& attribute)
{
    const auto [name, value] = attribute;
    const auto gap = static_cast<std::size_t>(value.raw.data() - name.data()) - name.size() - least_gap;
    const bool fits = name.size() >> name_bits == 0 && gap >> gap_bits == 0 && value.raw.size() >> value_bits == 0;
    const unsigned wide =
        static_cast<unsigned>(word_kind::wide_attribute) - static_cast<unsigned>(word_kind::attribute);
    const unsigned kind = static_cast<unsigned>(word_kind::attribute) + (fits ? 0 : wide) + (value.is_plain ? 0 : 1);
    word added = begin_word(name.data(), kind);
    if (fits) added |= word{name.size()} << name_shift | word{gap} << gap_shift | word{value.raw.size()} << value_shift;
    m_words.push_back(added);
}

void xml_index::add_text(const char* begin)
{
    m_words.push_back(begin_word(begin, static_cast<unsigned>(word_kind::text)));
}

void xml_index::set_form(std::size_t position, xml_element::kind form)
{
    word& head = m_words[position];
    head ^= (static_cast<word>(kind_of(head)) ^ static_cast<word>(form)) << begin_bits;
}

const char* xml_index::begin_at(std::size_t position) const
{
    return m_text.data() + begin_of(m_words[position]);
}

std::string_view xml_index::tag_at(std::size_t position) const
{
    const word head = m_words[position];
    const char* const begin = begin_at(position) + name_offset(kind_of(head));
    std::string_view name(begin, static_cast<std::size_t>(head >> name_shift));
    if (name.size() == element_limit) cursor_at(begin).take_name(name);
    return name;
}

std::size_t xml_index::read(std::size_t position, xml_element& element) const
{
    element.form = static_cast<xml_element::kind>(kind_of(m_words[position]));
    element.begin = begin_at(position);
    element.tag = tag_at(position);
    element.attributes.clear();
    element.texts = 0;
    const std::size_t end = m_words.size();
    for (++position; position != end && is_attribute(m_words[position]); ++position) {
        element.attributes.push_back(attribute_at(position));
    }
    for (; position != end && kind_of(m_words[position]) == word_kind::text; ++position) ++element.texts;
    return position;
}

xml_attribute xml_index::attribute_at(std::size_t position) const
{
    const word head = m_words[position];
    const word_kind kind = kind_of(head);
    const char* const name = begin_at(position);
    const auto size = static_cast<std::size_t>(bits(head, name_shift, name_bits));
    const auto gap = static_cast<std::size_t>(bits(head, gap_shift, gap_bits));
    xml_attribute attribute;
    attribute.name = {name, size};
    attribute.value.raw = {name + size + gap + least_gap, static_cast<std::size_t>(head >> value_shift)};
    attribute.value.is_plain = kind == word_kind::attribute || kind == word_kind::wide_attribute;
    if (kind < word_kind::wide_attribute) return attribute;
    xml_cursor cursor = cursor_at(name);
    cursor.take_name(attribute.name);
    cursor.take_equal();
    cursor.take_quoted(attribute.value.raw, xml_fault::missing_quote);
    return attribute;
}

}  // namespace NUVEK_2_18::parser
