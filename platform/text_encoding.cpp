#include "platform/text_encoding.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string_view>
#include <utility>

#include "platform/byte_runs.h"
#include "platform/unicode.h"
#include "platform/xml_characters.h"
#include "platform/xml_prolog.h"

namespace NUVEK_2_18::parser {

namespace {

// What the first bytes say about the encoding.
enum class byte_form
{
    bytes,     // one-byte units: UTF-8 unless another encoding is declared
    utf8_bom,  // UTF-8 with a BOM
    utf16le,
    utf16be,
};

struct opening
{
    byte_form form;
    std::size_t bom_size;
};

opening detect(std::string_view bytes)
{
    using namespace std::string_view_literals;
    if (bytes.substr(0, 3) == "\xEF\xBB\xBF"sv) return {byte_form::utf8_bom, 3};
    if (bytes.substr(0, 2) == "\xFF\xFE"sv) return {byte_form::utf16le, 2};
    if (bytes.substr(0, 2) == "\xFE\xFF"sv) return {byte_form::utf16be, 2};
    const std::size_t markup = bytes.find('<');
    if (markup == std::string_view::npos) return {byte_form::bytes, 0};
    if (markup % 2 == 0 && bytes.substr(markup + 1, 1) == "\0"sv) return {byte_form::utf16le, 0};
    if (markup % 2 == 1 && bytes[markup - 1] == '\0') return {byte_form::utf16be, 0};
    return {byte_form::bytes, 0};
}

bool is_same_name(std::string_view a, std::string_view b)
{
    const auto lower = [](char letter) { return letter >= 'A' && letter <= 'Z' ? letter | 0x20 : letter; };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [&](char x, char y) { return lower(x) == lower(y); });
}

// Whether a document of this form may declare this encoding. Names are case-insensitive.
bool may_declare(byte_form form, std::string_view encoding)
{
    const auto is = [&](std::string_view name) { return is_same_name(encoding, name); };
    switch (form) {
        case byte_form::bytes:
            return is("UTF-8") || is("ISO-8859-1") || is("US-ASCII");
        case byte_form::utf8_bom:
            return is("UTF-8");
        case byte_form::utf16le:
            return is("UTF-16") || is("UTF-16LE");
        case byte_form::utf16be:
            break;
    }
    return is("UTF-16") || is("UTF-16BE");
}

// Only the encoding is read here; faults of the declaration are found when the document is checked.
std::string_view declared_encoding(std::string_view text)
{
    xml_cursor cursor(text);
    std::string_view encoding;
    if (is_at_declaration(cursor)) take_declaration(cursor, encoding);
    return encoding;
}

void end_text(document_text& document, std::size_t size, xml_fault fault)
{
    document.text.resize(size);
    document.fault_at_end = fault;
}

document_text decode_utf16(std::string_view bytes, bool is_big_endian)
{
    // A unit of two bytes becomes at most three.
    document_text document = {text_buffer(bytes.size() + bytes.size() / 2 + 1), xml_fault::none};
    char* to = document.text.data();
    const auto unit_at = [&](std::size_t i) {
        if (i + 1 >= bytes.size()) return char16_t{0};
        const unsigned first = static_cast<unsigned char>(bytes[i]);
        const unsigned second = static_cast<unsigned char>(bytes[i + 1]);
        return static_cast<char16_t>(is_big_endian ? first << 8 | second : second << 8 | first);
    };
    for (std::size_t i = 0; i < bytes.size();) {
        const char16_t units[] = {unit_at(i), unit_at(i + 2)};
        const char16_t* at = units;
        const char32_t code_point = unicode::take_utf16(at, std::end(units));
        if (code_point == unicode::malformed || i + 1 == bytes.size()) {
            document.fault_at_end = xml_fault::not_utf16;
            break;
        }
        to = unicode::write_utf8(code_point, to);
        i += static_cast<std::size_t>(at - units) * 2;
    }
    document.text.resize(static_cast<std::size_t>(to - document.text.data()));
    return document;
}

void decode_latin1(document_text& document)
{
    const std::string_view bytes = document.text.view();
    const auto wider = static_cast<std::size_t>(std::count_if(bytes.begin(), bytes.end(), is_non_ascii));
    text_buffer text(bytes.size() + wider);
    char* to = text.data();
    for (const char byte : bytes) to = unicode::write_utf8(static_cast<unsigned char>(byte), to);
    text.resize(bytes.size() + wider);
    document.text = std::move(text);
}

void check_ascii(document_text& document)
{
    const std::string_view text = document.text.view();
    const auto* const found = std::find_if(text.begin(), text.end(), is_non_ascii);
    if (found == text.end()) return;
    end_text(document, static_cast<std::size_t>(found - text.begin()), xml_fault::not_ascii);
}

// Fast checks for the most common non-ASCII characters: all those of two bytes, and those of three bytes whose lead
// byte begins no overlong form, surrogate or non-character. The zero bytes after the text are not continuation bytes.
bool is_two_byte_char(const char* at)
{
    return static_cast<unsigned char>(at[0] - 0xC2) <= 0xDF - 0xC2 && unicode::is_continuation(at[1]);
}

bool is_three_byte_char(const char* at)
{
    return static_cast<unsigned char>(at[0] - 0xE1) <= 0xEC - 0xE1 && unicode::is_continuation(at[1]) &&
           unicode::is_continuation(at[2]);
}

// The fault of a text whose first malformed bytes are at this place. If it is a document of ASCII up to there, and goes on,
// the file is probably in a one-byte encoding.
xml_fault fault_of_bytes(std::string_view text, const char* malformed)
{
    const char* const end = text.data() + text.size();
    const std::string_view before = view(text.data(), malformed);
    const bool is_document =
        before.find('<') != std::string_view::npos && std::none_of(before.begin(), before.end(), is_non_ascii);
    constexpr std::ptrdiff_t longest_character = 4;
    if (!is_document || end - malformed < longest_character) return xml_fault::not_utf8;
    const bool is_windows = std::any_of(malformed, end, [](char byte) { return (byte & 0xE0) == 0x80; });
    return is_windows ? xml_fault::not_utf8_but_windows : xml_fault::not_utf8_but_latin1;
}

// Ends the text before its first ill-formed sequence, or its first character that XML does not allow. Returns true if
// the text contains a CR.
bool check_characters(document_text& document)
{
    const char* const begin = document.text.data();
    const char* const end = begin + document.text.size();
    bool has_cr = false;
    for (const char* at = find_uncommon(begin, end); at != end;) {
        const char* const character = at;
        if (*at == '\r') has_cr = true;
        if (is_two_byte_char(at)) {
            at += 2;
        } else if (is_three_byte_char(at)) {
            at += 3;
        } else if (const char32_t code_point = unicode::take_utf8(at, end); !is_char(code_point)) {
            const bool is_malformed = code_point == unicode::malformed;
            const xml_fault fault =
                is_malformed ? fault_of_bytes(document.text.view(), character) : xml_fault::forbidden_character;
            end_text(document, static_cast<std::size_t>(character - begin), fault);
            break;
        }
        // Non-ASCII characters come in runs.
        if (at != end && !is_non_ascii(*at)) at = find_uncommon(at, end);
    }
    return has_cr;
}

// CR LF and a lone CR become LF.
void normalize_line_ends(text_buffer& text)
{
    char* const begin = text.data();
    char* const end = begin + text.size();
    char* to = begin;
    for (const char* from = begin; from != end; ++from) {
        if (*from == '\n' && from != begin && from[-1] == '\r') continue;
        *to++ = *from;
    }
    std::replace(begin, to, '\r', '\n');
    text.resize(static_cast<std::size_t>(to - begin));
}

}  // namespace

document_text decode_document(text_buffer bytes)
{
    document_text document;
    const opening found = detect(bytes.view());
    bytes.remove_prefix(found.bom_size);
    if (found.form == byte_form::utf16le || found.form == byte_form::utf16be) {
        document = decode_utf16(bytes.view(), found.form == byte_form::utf16be);
        bytes = text_buffer();
    } else {
        document.text = std::move(bytes);
    }
    const std::string_view encoding = declared_encoding(document.text.view());
    if (!encoding.empty() && !may_declare(found.form, encoding)) {
        const auto end = static_cast<std::size_t>(encoding.data() - document.text.data()) + encoding.size();
        end_text(document, end, xml_fault::unknown_encoding);
    } else if (is_same_name(encoding, "ISO-8859-1")) {
        decode_latin1(document);
    } else if (is_same_name(encoding, "US-ASCII")) {
        check_ascii(document);
    }
    if (check_characters(document)) normalize_line_ends(document.text);
    return document;
}

}  // namespace NUVEK_2_18::parser
