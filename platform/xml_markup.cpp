#include "platform/xml_markup.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/byte_runs.h"
#include "platform/xml_characters.h"
#include "platform/xml_reference.h"

namespace NUVEK_2_18::parser {

namespace {

// Up to this number, comparing a name with all the names before it is faster than sorting them.
constexpr std::size_t few_attributes = 8;

// The first eight bytes of a name, padded with zeros. The name is in a text_buffer, so eight bytes can be read.
std::uint64_t first_bytes(std::string_view name)
{
    const char* const begin = name.data();
    std::uint64_t bytes = 0;
    // The same number on any processor; compiled to a single load on little-endian ones.
    for (unsigned i = 0; i < sizeof bytes; ++i) bytes |= std::uint64_t{static_cast<unsigned char>(begin[i])} << 8 * i;
    return name.size() < sizeof bytes ? bytes & ((std::uint64_t{1} << 8 * name.size()) - 1) : bytes;
}

// The first name that repeats an earlier one among the attributes at these positions, or nullptr. Sorts the names.
const char* find_repeated_among_many(const xml_index& index, std::size_t first, std::size_t end)
{
    // Any total order will do; by length first compares the fewest bytes. Equal names stay in the order of the text.
    const auto order = [](std::string_view a, std::string_view b) {
        if (a.size() != b.size()) return a.size() < b.size();
        const int names = a.compare(b);
        return names != 0 ? names < 0 : a.data() < b.data();
    };
    std::vector<std::string_view> names;
    for (std::size_t i = first; i != end; ++i) names.push_back(index.name_at(i));
    std::sort(names.begin(), names.end(), order);
    const char* repeated = nullptr;
    for (std::size_t i = 1; i < names.size(); ++i) {
        const char* const name = names[i].data();
        if (names[i] == names[i - 1] && (repeated == nullptr || name < repeated)) repeated = name;
    }
    return repeated;
}

// The same, but fast in the usual case: each name sets one of 64 bits, and a name can only repeat an earlier one if its
// bit is set already.
const char* find_repeated_name(const xml_index& index, std::size_t first, std::size_t end)
{
    std::uint64_t bits = 0;
    for (std::size_t i = first; i != end; ++i) {
        const std::string_view name = index.name_at(i);
        const std::uint64_t bit = std::uint64_t{1} << ((first_bytes(name) + name.size()) * 0x9E3779B97F4A7C15 >> 58);
        const bool may_repeat = (bits & bit) != 0;
        bits |= bit;
        if (may_repeat && i - first > few_attributes) return find_repeated_among_many(index, first, end);
        for (std::size_t earlier = first; may_repeat && earlier != i; ++earlier) {
            if (index.name_at(earlier) == name) return name.data();
        }
    }
    return nullptr;
}

// AttValue = '"' ([^<&"] | Reference)* '"' | "'" ([^<&'] | Reference)* "'"
bool take_value(xml_cursor& cursor, xml_value& value)
{
    const char quote = *cursor;
    if (quote != '"' && quote != '\'') return cursor.fail(xml_fault::missing_quote);
    const char* const begin = cursor.at() + 1;
    cursor.go_to(find_value_stop(begin, quote));
    while (*cursor != quote) {
        value.is_plain = false;
        char32_t code_point = 0;
        if (is_space(*cursor)) {
            cursor.skip(1);
        } else if (*cursor != '&') {
            return cursor.fail(cursor.is_at_end() ? xml_fault::missing_quote : xml_fault::less_than_in_value);
        } else if (!take_reference(cursor, code_point)) {
            return cursor.is_at_end() && cursor.fail(xml_fault::missing_quote);
        }
        cursor.go_to(find_value_stop(cursor.at(), quote));
    }
    value.raw = view(begin, cursor.at());
    cursor.skip(1);
    return true;
}

// (S Attribute)* S? ('>' | '/>'), where Attribute = Name Eq AttValue
bool take_attributes(xml_cursor& cursor, xml_index& index, bool& is_empty)
{
    for (;;) {
        const char* const begin = cursor.at();
        cursor.skip_space();
        is_empty = *cursor == '/';
        if (*cursor == '>' || (is_empty && cursor.at()[1] == '>')) break;
        if (is_empty) return cursor.fail(xml_fault::bad_tag_end);
        xml_attribute attribute;
        const bool has_space = cursor.at() != begin;
        if (!cursor.take_name(attribute.name)) return cursor.fail(xml_fault::bad_tag_end);
        if (!has_space) return cursor.fail_at(begin, xml_fault::missing_space);
        if (!cursor.take_equal() || !take_value(cursor, attribute.value)) return false;
        index.add(attribute);
    }
    cursor.skip(is_empty ? 2 : 1);
    return true;
}

// True for the reserved target `xml`, in any mixture of upper and lower case.
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
    if (cursor.sees("]]>")) return cursor.fail(xml_fault::cdata_end_in_text);
    cursor.skip(1);
    return true;
}

}  // namespace

construct construct_after_exclamation_mark(const xml_cursor& cursor)
{
    if (cursor.sees("<!--")) return construct::comment;
    if (cursor.sees("<![CDATA[")) return construct::cdata;
    return cursor.sees("<!DOCTYPE") ? construct::doctype : construct::start_tag;
}

// STag = '<' Name (S Attribute)* S? '>'      EmptyElemTag = '<' Name (S Attribute)* S? '/>'
bool take_start_tag(xml_cursor& cursor, xml_index& index)
{
    const char* const begin = cursor.at();
    const std::size_t position = index.size();
    cursor.skip(1);
    std::string_view name;
    if (!cursor.take_name(name)) return cursor.fail(xml_fault::bare_less_than);
    index.add(xml_element::kind::opening, begin, name);
    bool is_empty = false;
    bool is_sound = take_attributes(cursor, index, is_empty);
    // A duplicate attribute takes precedence over a later fault. Most tags have no more than one attribute.
    const bool has_several = index.size() - position > 2;
    const char* const repeated = has_several ? find_repeated_name(index, position + 1, index.size()) : nullptr;
    if (repeated != nullptr) is_sound = cursor.fail_at(repeated, xml_fault::attribute_redefined);
    if (is_empty) index.set_form(position, xml_element::kind::whole);
    if (!is_sound) index.cut(position);
    return is_sound;
}

// ETag = '</' Name S? '>'
bool take_end_tag(xml_cursor& cursor, std::string_view& name)
{
    if (!cursor.take("</") || !cursor.take_name(name)) return false;
    cursor.skip_space();
    return cursor.take(">", xml_fault::bad_tag_end);
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
    if (!cursor.take("<!--") || !cursor.take_until("--", content)) return false;
    if (cursor.take(">")) return true;
    return !cursor.is_at_end() && cursor.fail_at(content.data() + content.size(), xml_fault::double_hyphen);
}

// PI = '<?' PITarget (S Char*)? '?>'      PITarget is a Name other than xml in any case
bool take_instruction(xml_cursor& cursor)
{
    std::string_view target;
    if (!cursor.take("<?") || !cursor.take_name(target)) return false;
    const xml_fault fault = target == "xml" ? xml_fault::late_declaration : xml_fault::reserved_target;
    if (is_reserved(target)) return cursor.fail_at(target.data() - 2, fault);
    if (!is_space(*cursor)) return cursor.take("?>");
    return cursor.take_until("?>", target);
}

bool take_text_run(xml_cursor& cursor, text_run& run)
{
    while (!cursor.is_at_end()) {
        const char* const begin = cursor.at();
        run = {};
        switch (next_construct(cursor)) {
            case construct::text:
                take_text(cursor, run.is_blank);
                run.raw = view(begin, cursor.at());
                return true;
            case construct::cdata:
                run.is_cdata = take_cdata(cursor, run.content);
                run.raw = view(begin, cursor.at());
                run.is_blank = is_space(run.content);
                return true;
            case construct::comment:
                take_comment(cursor);
                break;
            case construct::instruction:
                take_instruction(cursor);
                break;
            default:
                return false;
        }
    }
    return false;
}

void append_content(std::string_view rest, strings::ustring8& to)
{
    xml_cursor cursor(rest);
    for (text_run run; take_text_run(cursor, run);) {
        if (run.is_cdata) {
            to.append(run.content);
        } else {
            append_text(run.raw, to);
        }
    }
}

}  // namespace NUVEK_2_18::parser
