#include "platform/xml_markup.h"

#include <algorithm>

#include "platform/byte_runs.h"
#include "platform/xml_characters.h"
#include "platform/xml_reference.h"

namespace NUVEK_2_18::parser {

namespace {

// Up to here a name is compared with all before it; beyond it sorting the names is faster.
constexpr std::size_t few_attributes = 8;

// The first eight bytes of a name, or all of it and zeros. The name is in a text, so there are eight bytes to read.
std::uint64_t first_bytes(std::string_view name)
{
    const char* const begin = name.data();
    std::uint64_t bytes = 0;
    // The same number on any processor; a single load where the lowest byte comes first.
    for (unsigned i = 0; i < sizeof bytes; ++i) bytes |= std::uint64_t{static_cast<unsigned char>(begin[i])} << 8 * i;
    return name.size() < sizeof bytes ? bytes & ((std::uint64_t{1} << 8 * name.size()) - 1) : bytes;
}

// Matches a reserved instruction target, in any mixture of cases.
bool is_reserved(std::string_view target)
{
    return target.size() == 3 && (target[0] | 0x20) == 'x' && (target[1] | 0x20) == 'm' && (target[2] | 0x20) == 'l';
}

bool is_blank_code_point(char32_t code_point)
{
    return code_point < 0x80 && is_space(static_cast<char>(code_point));
}

// Char* without ']]>'
bool take_bracket(xml_cursor& cursor)
{
    return cursor.sees("]]>") ? cursor.fail(xml_fault::unexpected_character) : cursor.take("]");
}

}  // namespace

construct next_construct(const xml_cursor& cursor)
{
    if (*cursor != '<') return cursor.is_at_end() ? construct::end : construct::text;
    const char next = cursor.at()[1];
    if (next == '/') return construct::end_tag;
    if (next == '?') return construct::instruction;
    if (next != '!') return construct::start_tag;
    if (cursor.sees("<!--")) return construct::comment;
    if (cursor.sees("<![CDATA[")) return construct::cdata;
    return cursor.sees("<!DOCTYPE") ? construct::doctype : construct::start_tag;
}

// STag = '<' Name (S Attribute)* S? '>'      EmptyElemTag = '<' Name (S Attribute)* S? '/>'
bool start_tag_reader::take(xml_cursor& cursor, xml_element& element)
{
    element.begin = cursor.at();
    element.attributes.clear();
    m_name_bits = 0;
    m_repeated_name = nullptr;
    m_may_repeat = false;
    cursor.go_to(element.begin + 1);
    if (!cursor.take_name(element.tag)) return false;
    const bool is_sound = take_attributes(cursor, element);
    // A duplicate attribute takes precedence over a later fault.
    return check_names(cursor, element) && is_sound;
}

// (S Attribute)* S? ('>' | '/>'), where Attribute = Name Eq AttValue
bool start_tag_reader::take_attributes(xml_cursor& cursor, xml_element& element)
{
    for (;;) {
        const char* const begin = cursor.at();
        cursor.skip_space();
        const bool is_end = *cursor == '>';
        element.form = is_end ? xml_element::kind::opening : xml_element::kind::whole;
        if (is_end || *cursor == '/') return cursor.take(is_end ? ">" : "/>");
        if (cursor.at() == begin) return cursor.fail(xml_fault::unexpected_character);
        xml_attribute attribute;
        if (!cursor.take_name(attribute.name) || !cursor.take_equal() || !take_value(cursor, attribute.value)) {
            return false;
        }
        note_name(element, attribute.name);
        element.attributes.push_back(attribute);
    }
}

// AttValue = '"' ([^<&"] | Reference)* '"' | "'" ([^<&'] | Reference)* "'"
bool start_tag_reader::take_value(xml_cursor& cursor, xml_value& value)
{
    const char quote = *cursor;
    if (quote != '"' && quote != '\'') return cursor.fail(xml_fault::missing_quote);
    const char* const begin = cursor.at() + 1;
    cursor.go_to(find_value_stop(begin, quote));
    while (*cursor != quote) {
        value.is_plain = false;
        char32_t code_point = 0;
        if (is_space(*cursor)) {
            cursor.go_to(cursor.at() + 1);
        } else if (*cursor != '&') {
            return cursor.fail(cursor.is_at_end() ? xml_fault::missing_quote : xml_fault::unexpected_character);
        } else if (!take_reference(cursor, code_point)) {
            return cursor.is_at_end() && cursor.fail(xml_fault::missing_quote);
        }
        cursor.go_to(find_value_stop(cursor.at(), quote));
    }
    value.raw = view(begin, cursor.at());
    cursor.go_to(cursor.at() + 1);
    return true;
}

// The name is that of the attribute after the ones that the element has.
void start_tag_reader::note_name(const xml_element& element, std::string_view name)
{
    const std::uint64_t bit = std::uint64_t{1} << ((first_bytes(name) + name.size()) * 0x9E3779B97F4A7C15 >> 58);
    const bool is_new = (m_name_bits & bit) == 0;
    m_name_bits |= bit;
    if (is_new || m_repeated_name != nullptr) return;
    const auto& earlier = element.attributes;
    m_may_repeat = earlier.size() >= few_attributes;
    const auto is_same = [&](const xml_attribute& each) { return each.name == name; };
    if (!m_may_repeat && std::any_of(earlier.begin(), earlier.end(), is_same)) m_repeated_name = name.data();
}

bool start_tag_reader::check_names(xml_cursor& cursor, const xml_element& element)
{
    if (m_may_repeat && m_repeated_name == nullptr) m_repeated_name = find_repeated_name(element.attributes);
    return m_repeated_name == nullptr || cursor.fail_at(m_repeated_name, xml_fault::attribute_redefined);
}

// The first of the names that repeats an earlier one, or nullptr.
const char* start_tag_reader::find_repeated_name(const std::vector<xml_attribute>& attributes)
{
    // Any total order will do; lengths first compares the fewest bytes. Equal names are in the order of the text.
    const auto order = [](std::string_view a, std::string_view b) {
        if (a.size() != b.size()) return a.size() < b.size();
        const int names = a.compare(b);
        return names != 0 ? names < 0 : a.data() < b.data();
    };
    m_sorted.clear();
    for (const xml_attribute& each : attributes) m_sorted.push_back(each.name);
    std::sort(m_sorted.begin(), m_sorted.end(), order);
    const char* first = nullptr;
    for (std::size_t i = 1; i < m_sorted.size(); ++i) {
        const char* const name = m_sorted[i].data();
        if (m_sorted[i] == m_sorted[i - 1] && (first == nullptr || name < first)) first = name;
    }
    return first;
}

// ETag = '</' Name S? '>'
bool take_end_tag(xml_cursor& cursor, std::string_view& name)
{
    if (!cursor.take("</") || !cursor.take_name(name)) return false;
    cursor.skip_space();
    return cursor.take(">");
}

// ([^<&] | Reference)* without ']]>'
bool take_text(xml_cursor& cursor, bool& is_blank)
{
    const char* const begin = cursor.at();
    for (;;) {
        const char* const from = cursor.at();
        const char* const stop = find_first(from, '<', '&', ']');
        is_blank = is_blank && is_space(view(from, stop));
        cursor.go_to(stop);
        if (*stop == '<' || cursor.is_at_end()) return true;
        char32_t code_point = ']';
        const bool is_sound = *stop == '&' ? take_reference(cursor, code_point) : take_bracket(cursor);
        if (!is_sound && stop == begin) return false;
        if (!is_sound) {
            cursor.go_to(stop);
            return true;
        }
        is_blank = is_blank && is_blank_code_point(code_point);
    }
}

// CDSect = '<![CDATA[' (Char* - (Char* ']]>' Char*)) ']]>'
bool take_cdata(xml_cursor& cursor, std::string_view& content)
{
    return cursor.take("<![CDATA[") && cursor.take_until("]]>", content);
}

// Comment = '<!--' (Char* without '--') '-->'
bool take_comment(xml_cursor& cursor)
{
    std::string_view content;
    return cursor.take("<!--") && cursor.take_until("--", content) && cursor.take(">");
}

// PI = '<?' PITarget (S Char*)? '?>'      PITarget is a Name other than xml in any case
bool take_instruction(xml_cursor& cursor)
{
    std::string_view target;
    if (!cursor.take("<?") || !cursor.take_name(target)) return false;
    if (is_reserved(target)) return cursor.fail_at(target.data(), xml_fault::unexpected_character);
    if (!is_space(*cursor)) return cursor.take("?>");
    return cursor.take_until("?>", target);
}

void append_content(std::string_view rest, strings::ustring8& to)
{
    xml_cursor cursor(rest);
    for (;;) {
        const char* const begin = cursor.at();
        std::string_view content;
        bool is_blank = true;
        switch (next_construct(cursor)) {
            case construct::text:
                take_text(cursor, is_blank);
                append_text(view(begin, cursor.at()), to);
                break;
            case construct::cdata:
                take_cdata(cursor, content);
                to.append(content);
                break;
            case construct::comment:
                take_comment(cursor);
                break;
            case construct::instruction:
                take_instruction(cursor);
                break;
            default:
                return;
        }
    }
}

}  // namespace NUVEK_2_18::parser
