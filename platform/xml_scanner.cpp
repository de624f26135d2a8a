#include "platform/xml_scanner.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "platform/unicode.h"
#include "platform/xml_characters.h"

namespace NUVEK_2_18::parser {

namespace {

// Up to here the attributes of an element are compared pair by pair; beyond it sorting their names is faster.
constexpr std::size_t few_attributes = 8;

bool is_digit(char character)
{
    return character >= '0' && character <= '9';
}

// Matches a reserved instruction target, in any mixture of cases.
bool is_reserved(std::string_view target)
{
    return target.size() == 3 && (target[0] | 0x20) == 'x' && (target[1] | 0x20) == 'm' && (target[2] | 0x20) == 'l';
}

// VersionNum = '1.' [0-9]+
bool is_version(std::string_view version)
{
    return version.size() > 2 && version.substr(0, 2) == "1." &&
           std::all_of(version.begin() + 2, version.end(), is_digit);
}

// EncName = [A-Za-z] ([A-Za-z0-9._] | '-')*      the letters are those of a name without the colon and a first
// underline
bool is_encoding_name(std::string_view name)
{
    return !name.empty() && is_byte(name.front(), name_start_byte) && name.front() != '_' &&
           std::all_of(name.begin(), name.end(), [](char byte) { return is_byte(byte, name_byte) && byte != ':'; });
}

// PubidLiteral's characters, of which the apostrophe cannot stand in a literal that it closes.
bool is_public_id(std::string_view id)
{
    constexpr std::string_view marks = " \n-'()+,./:=?;!*#@$_%";
    return std::all_of(id.begin(), id.end(), [&](char byte) {
        return is_digit(byte) || (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
               marks.find(byte) != std::string_view::npos;
    });
}

const char* find_stop(const char* at, const char* end, unsigned stops)
{
    while (at != end && !is_byte(*at, stops)) ++at;
    return at;
}

int digit_value(char character, bool hexadecimal)
{
    if (is_digit(character)) return character - '0';
    const int letter = (character | 0x20) - 'a';
    return hexadecimal && letter >= 0 && letter < 6 ? letter + 10 : -1;
}

// The code point of the digits at `at`, which then stands behind them; malformed when there are none. Values beyond
// Unicode stay beyond it however many digits follow.
char32_t take_number(const char*& at, const char* end, bool hexadecimal)
{
    constexpr char32_t beyond = 0x110000;
    char32_t number = unicode::malformed;
    for (; at != end && digit_value(*at, hexadecimal) >= 0; ++at) {
        if (number == unicode::malformed) number = 0;
        const auto digit = static_cast<char32_t>(digit_value(*at, hexadecimal));
        number = std::min<char32_t>(number * (hexadecimal ? 16 : 10) + digit, beyond);
    }
    return number;
}

// The code point of a predefined entity, 0 for any other name.
char32_t predefined_entity(std::string_view name)
{
    struct entity
    {
        std::string_view name;
        char32_t code_point;
    };
    constexpr entity entities[] = {{"lt", '<'}, {"gt", '>'}, {"amp", '&'}, {"apos", '\''}, {"quot", '"'}};
    for (const entity& known : entities) {
        if (known.name == name) return known.code_point;
    }
    return 0;
}

// Resolves the checked reference at `at`, which then stands behind it.
void append_reference(const char*& at, const char* end, strings::ustring8& to)
{
    ++at;
    if (*at == '#') {
        const bool hexadecimal = *++at == 'x';
        if (hexadecimal) ++at;
        unicode::append_utf8(take_number(at, end, hexadecimal), to);
    } else {
        const char* const name = at;
        at = static_cast<const char*>(std::memchr(at, ';', static_cast<std::size_t>(end - at)));
        unicode::append_utf8(predefined_entity({name, static_cast<std::size_t>(at - name)}), to);
    }
    ++at;
}

}  // namespace

xml_scanner::xml_scanner(std::string_view text, error_type fault_at_end)
    : m_begin(text.data()), m_at(m_begin), m_end(m_begin + text.size()), m_fault_at_end(fault_at_end)
{
}

xml_scanner::construct xml_scanner::ahead() const
{
    if (m_at == m_end) return construct::end;
    if (*m_at != '<') return construct::text;
    if (stands("</")) return construct::end_tag;
    if (stands("<?")) return construct::instruction;
    if (!stands("<!")) return construct::start_tag;
    if (stands("<!--")) return construct::comment;
    if (stands("<![CDATA[")) return construct::cdata;
    if (stands("<!DOCTYPE")) return construct::doctype;
    return construct::start_tag;
}

bool xml_scanner::at_declaration() const
{
    constexpr std::string_view opening = "<?xml";
    return stands(opening) && m_end - m_at > static_cast<std::ptrdiff_t>(opening.size()) &&
           is_space(m_at[opening.size()]);
}

// A fault that is found where the text ends is the text's own, if it has one.
bool xml_scanner::fail(error_type code)
{
    m_fault = m_at == m_end && m_fault_at_end != xml_stream_parser::no_error ? m_fault_at_end : code;
    return false;
}

bool xml_scanner::stands(std::string_view literal) const
{
    return static_cast<std::size_t>(m_end - m_at) >= literal.size() &&
           std::memcmp(m_at, literal.data(), literal.size()) == 0;
}

bool xml_scanner::take(std::string_view literal)
{
    if (!stands(literal)) return fail(xml_stream_parser::unexpected_character);
    m_at += literal.size();
    return true;
}

// Takes everything up to and with the terminator; m_content is what stands before it.
bool xml_scanner::take_until(std::string_view terminator)
{
    const std::string_view rest(m_at, static_cast<std::size_t>(m_end - m_at));
    m_content = rest.substr(0, rest.find(terminator));
    m_at += m_content.size();
    return take(terminator);
}

bool xml_scanner::take_space()
{
    const char* const begin = m_at;
    const char* at = begin;
    while (at != m_end && is_space(*at)) ++at;
    m_at = at;
    return at != begin;
}

// Name = NameStartChar NameChar*
bool xml_scanner::take_name(std::string_view& name)
{
    const char* const begin = m_at;
    const char* at = begin;
    if (at != m_end && is_byte(*at, name_start_byte)) ++at;
    for (;;) {
        while (at != begin && at != m_end && is_byte(*at, name_byte)) ++at;
        if (at == m_end) break;
        const char* next = at;
        const char32_t code_point = unicode::take_utf8(next, m_end);
        if (!(at == begin ? is_name_start(code_point) : is_name(code_point))) break;
        at = next;
    }
    m_at = at;
    name = {begin, static_cast<std::size_t>(at - begin)};
    return !name.empty() || fail(xml_stream_parser::unexpected_character);
}

// Eq = S? '=' S?
bool xml_scanner::take_equal()
{
    take_space();
    if (m_at == m_end) return fail(xml_stream_parser::unexpected_character);
    if (*m_at != '=') return fail(xml_stream_parser::missing_equal);
    ++m_at;
    take_space();
    return true;
}

// A literal in either kind of quotes, its content not looked at.
bool xml_scanner::take_quoted(std::string_view& content, error_type unopened)
{
    if (m_at == m_end || (*m_at != '"' && *m_at != '\'')) return fail(unopened);
    const char* const begin = m_at + 1;
    const auto* const close =
        static_cast<const char*>(std::memchr(begin, *m_at, static_cast<std::size_t>(m_end - begin)));
    m_at = close == nullptr ? m_end : close;
    if (close == nullptr) return fail(unopened);
    content = {begin, static_cast<std::size_t>(close - begin)};
    ++m_at;
    return true;
}

bool xml_scanner::need_space()
{
    return take_space() || fail(xml_stream_parser::unexpected_character);
}

// XMLDecl = '<?xml' VersionInfo EncodingDecl? SDDecl? S? '?>'
bool xml_scanner::take_declaration()
{
    std::string_view version;
    std::string_view standalone;
    const auto is_yes_or_no = [](std::string_view value) { return value == "yes" || value == "no"; };
    if (!take("<?xml") || !take_setting("version", is_version, version)) return false;
    if (version.empty()) return fail(xml_stream_parser::unexpected_character);
    if (!take_setting("encoding", is_encoding_name, m_encoding)) return false;
    if (!take_setting("standalone", is_yes_or_no, standalone)) return false;
    take_space();
    return take("?>");
}

// One setting of the XML declaration = S name Eq quoted value. When another word stands here nothing is taken, the
// value is left as it was and the result is true.
bool xml_scanner::take_setting(std::string_view name, bool (*is_valid)(std::string_view), std::string_view& value)
{
    const char* const begin = m_at;
    const bool spaced = take_space();
    if (!stands(name)) {
        m_at = begin;
        return true;
    }
    if (!spaced) return fail(xml_stream_parser::unexpected_character);
    m_at += name.size();
    if (!take_equal()) return false;
    const char* const opening = m_at;
    std::string_view found;
    if (!take_quoted(found, xml_stream_parser::missing_quote)) return false;
    if (!is_valid(found)) {
        m_at = opening;
        return fail(xml_stream_parser::unexpected_character);
    }
    value = found;
    return true;
}

// STag = '<' Name (S Attribute)* S? '>'      EmptyElemTag = '<' Name (S Attribute)* S? '/>'
bool xml_scanner::take_start_tag()
{
    ++m_at;
    m_attributes.clear();
    if (!take_name(m_name)) return false;
    const bool taken = take_attributes();
    // A name given twice comes before whatever is wrong behind it.
    return check_attributes() && taken;
}

bool xml_scanner::take_attributes()
{
    for (;;) {
        const bool spaced = take_space();
        m_is_empty_element = m_at != m_end && *m_at == '/';
        if (m_is_empty_element) return take("/>");
        if (m_at != m_end && *m_at == '>') {
            ++m_at;
            return true;
        }
        if (!spaced) return fail(xml_stream_parser::unexpected_character);
        std::string_view attribute;
        if (!take_name(attribute) || !take_equal() || !take_value()) return false;
        m_attributes.push_back(attribute);
    }
}

// AttValue = '"' ([^<&"] | Reference)* '"' | "'" ([^<&'] | Reference)* "'"
bool xml_scanner::take_value()
{
    if (m_at == m_end || (*m_at != '"' && *m_at != '\'')) return fail(xml_stream_parser::missing_quote);
    const char quote = *m_at++;
    for (;;) {
        m_at = find_stop(m_at, m_end, value_stop);
        if (m_at == m_end) return fail(xml_stream_parser::missing_quote);
        if (*m_at == quote) break;
        if (*m_at == '<') return fail(xml_stream_parser::unexpected_character);
        if (*m_at != '&') {
            ++m_at;
        } else if (!take_reference()) {
            return m_at == m_end ? fail(xml_stream_parser::missing_quote) : false;
        }
    }
    ++m_at;
    return true;
}

// Reference = '&' Name ';' | '&#' [0-9]+ ';' | '&#x' [0-9a-fA-F]+ ';'
bool xml_scanner::take_reference()
{
    const char* const begin = m_at++;
    if (m_at != m_end && *m_at == '#') {
        ++m_at;
        const bool hexadecimal = m_at != m_end && *m_at == 'x';
        if (hexadecimal) ++m_at;
        const char32_t code_point = take_number(m_at, m_end, hexadecimal);
        if (code_point == unicode::malformed) return fail(xml_stream_parser::unexpected_character);
        if (!take(";")) return false;
        if (is_char(code_point)) return true;
        m_at = begin;
        return fail(xml_stream_parser::unexpected_character);
    }
    std::string_view name;
    if (!take_name(name) || !take(";")) return false;
    if (predefined_entity(name) != 0) return true;
    m_at = begin;
    return fail(xml_stream_parser::unknown_entity);
}

// No name occurs twice among the attributes taken so far. A fault stands at the first one that repeats an earlier one.
bool xml_scanner::check_attributes()
{
    const std::string_view* const repeated =
        m_attributes.size() <= few_attributes ? find_repeated_among_few() : find_repeated();
    if (repeated == nullptr) return true;
    m_at = repeated->data();
    return fail(xml_stream_parser::attribute_redefined);
}

const std::string_view* xml_scanner::find_repeated_among_few() const
{
    for (auto later = m_attributes.begin(); later != m_attributes.end(); ++later) {
        for (auto earlier = m_attributes.begin(); earlier != later; ++earlier) {
            if (*earlier == *later) return &*later;
        }
    }
    return nullptr;
}

const std::string_view* xml_scanner::find_repeated()
{
    // Any total order will do; lengths first compares the fewest bytes.
    const auto order = [](const std::string_view* a, const std::string_view* b) {
        if (a->size() != b->size()) return a->size() < b->size();
        const int names = a->compare(*b);
        return names != 0 ? names < 0 : a < b;
    };
    m_sorted.clear();
    for (const std::string_view& each : m_attributes) m_sorted.push_back(&each);
    std::sort(m_sorted.begin(), m_sorted.end(), order);
    const std::string_view* first = nullptr;
    for (std::size_t i = 1; i < m_sorted.size(); ++i) {
        const bool repeats = *m_sorted[i] == *m_sorted[i - 1];
        if (repeats && (first == nullptr || m_sorted[i] < first)) first = m_sorted[i];
    }
    return first;
}

// ETag = '</' Name S? '>'
bool xml_scanner::take_end_tag()
{
    if (!take("</") || !take_name(m_name)) return false;
    take_space();
    return take(">");
}

// Character data and references: ([^<&] | Reference)* without ']]>'
bool xml_scanner::take_text()
{
    const char* const begin = m_at;
    for (;;) {
        m_at = find_stop(m_at, m_end, text_stop);
        if (m_at == m_end || *m_at == '<') break;
        const char* const stop = m_at;
        if (*m_at == '&' ? take_reference() : take_bracket()) continue;
        if (stop == begin) return false;
        m_at = stop;
        break;
    }
    m_content = {begin, static_cast<std::size_t>(m_at - begin)};
    return true;
}

bool xml_scanner::take_bracket()
{
    if (stands("]]>")) return fail(xml_stream_parser::unexpected_character);
    ++m_at;
    return true;
}

bool xml_scanner::take_blank()
{
    take_space();
    return m_at == m_end || *m_at == '<' || fail(xml_stream_parser::unexpected_character);
}

// CDSect = '<![CDATA[' (Char* - (Char* ']]>' Char*)) ']]>'
bool xml_scanner::take_cdata()
{
    return take("<![CDATA[") && take_until("]]>");
}

// Comment = '<!--' (Char* without '--') '-->'
bool xml_scanner::take_comment()
{
    return take("<!--") && take_until("--") && take(">");
}

// PI = '<?' PITarget (S Char*)? '?>'      PITarget is a Name other than xml in any case
bool xml_scanner::take_instruction()
{
    std::string_view target;
    if (!take("<?") || !take_name(target)) return false;
    if (is_reserved(target)) {
        m_at = target.data();
        return fail(xml_stream_parser::unexpected_character);
    }
    return take_space() ? take_until("?>") : take("?>");
}

// doctypedecl = '<!DOCTYPE' S Name (S ExternalID)? S? ('[' intSubset ']' S?)? '>'
bool xml_scanner::take_doctype()
{
    std::string_view name;
    if (!take("<!DOCTYPE") || !need_space() || !take_name(name)) return false;
    take_space();
    if ((stands("SYSTEM") || stands("PUBLIC")) && !take_external_id()) return false;
    take_space();
    if (m_at != m_end && *m_at == '[' && !take_internal_subset()) return false;
    take_space();
    return take(">");
}

// ExternalID = 'SYSTEM' S SystemLiteral | 'PUBLIC' S PubidLiteral S SystemLiteral
bool xml_scanner::take_external_id()
{
    std::string_view literal;
    if (!take("SYSTEM")) {
        if (!take("PUBLIC") || !need_space()) return false;
        const char* const opening = m_at;
        if (!take_quoted(literal, xml_stream_parser::unexpected_character)) return false;
        if (!is_public_id(literal)) {
            m_at = opening;
            return fail(xml_stream_parser::unexpected_character);
        }
    }
    return need_space() && take_quoted(literal, xml_stream_parser::unexpected_character);
}

// intSubset = (markupdecl | PEReference | S)*
bool xml_scanner::take_internal_subset()
{
    ++m_at;
    for (;;) {
        take_space();
        if (m_at == m_end) return fail(xml_stream_parser::unexpected_character);
        if (*m_at == ']') {
            ++m_at;
            return true;
        }
        if (!take_subset_part()) return false;
    }
}

bool xml_scanner::take_subset_part()
{
    std::string_view name;
    switch (ahead()) {
        case construct::comment:
            return take_comment();
        case construct::instruction:
            return take_instruction();
        case construct::text:
            return take("%") && take_name(name) && take(";");
        default:
            return take_markup_declaration();
    }
}

// A declaration of an element, attributes, an entity or a notation. Only its extent matters: it ends at the first '>'
// outside quotes.
bool xml_scanner::take_markup_declaration()
{
    constexpr std::string_view openings[] = {"<!ELEMENT", "<!ATTLIST", "<!ENTITY", "<!NOTATION"};
    const auto* const opening = std::find_if(std::begin(openings), std::end(openings),
                                             [this](std::string_view literal) { return stands(literal); });
    if (opening == std::end(openings)) return fail(xml_stream_parser::unexpected_character);
    m_at += opening->size();
    if (!need_space()) return false;
    for (;;) {
        m_at = find_stop(m_at, m_end, declaration_stop);
        if (m_at == m_end || *m_at == '<') return fail(xml_stream_parser::unexpected_character);
        if (*m_at == '>') break;
        std::string_view literal;
        if (!take_quoted(literal, xml_stream_parser::unexpected_character)) return false;
    }
    ++m_at;
    return true;
}

void append_text(std::string_view text, strings::ustring8& to)
{
    const char* at = text.data();
    const char* const end = at + text.size();
    while (at != end) {
        const void* const found = std::memchr(at, '&', static_cast<std::size_t>(end - at));
        const char* const stop = found == nullptr ? end : static_cast<const char*>(found);
        to.append(at, stop);
        at = stop;
        if (at != end) append_reference(at, end, to);
    }
}

void append_value(std::string_view value, strings::ustring8& to)
{
    const char* at = value.data();
    const char* const end = at + value.size();
    while (at != end) {
        const char* const stop = find_stop(at, end, value_change);
        to.append(at, stop);
        at = stop;
        if (at == end) break;
        if (*at == '&') {
            append_reference(at, end, to);
        } else {
            to.push_back(' ');
            ++at;
        }
    }
}

}  // namespace NUVEK_2_18::parser
