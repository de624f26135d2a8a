#include "platform/text_encoding.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <string_view>
#include <utility>

#include "platform/unicode.h"
#include "platform/xml_characters.h"
#include "platform/xml_scanner.h"

namespace NUVEK_2_18::parser {

namespace {

// What the first bytes say of the encoding, and how many of them are a byte order mark.
enum class byte_form
{
    bytes,         // one byte a unit: UTF-8, unless the header declares another encoding
    marked_bytes,  // UTF-8, by its mark
    little_endian_pairs,
    big_endian_pairs,
};

struct opening
{
    byte_form form;
    std::size_t mark_size;
};

opening look_at(std::string_view bytes)
{
    using namespace std::string_view_literals;
    if (bytes.substr(0, 3) == "\xEF\xBB\xBF"sv) return {byte_form::marked_bytes, 3};
    if (bytes.substr(0, 2) == "\xFF\xFE"sv) return {byte_form::little_endian_pairs, 2};
    if (bytes.substr(0, 2) == "\xFE\xFF"sv) return {byte_form::big_endian_pairs, 2};
    const std::size_t markup = bytes.find('<');
    if (markup == std::string_view::npos) return {byte_form::bytes, 0};
    if (markup % 2 == 0 && bytes.substr(markup + 1, 1) == "\0"sv) return {byte_form::little_endian_pairs, 0};
    if (markup % 2 == 1 && bytes[markup - 1] == '\0') return {byte_form::big_endian_pairs, 0};
    return {byte_form::bytes, 0};
}

bool is_same_name(std::string_view a, std::string_view b)
{
    const auto lower = [](char letter) { return letter >= 'A' && letter <= 'Z' ? letter | 0x20 : letter; };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [&](char x, char y) { return lower(x) == lower(y); });
}

// Whether a document of this form may declare this encoding. Names are compared without regard to case.
bool may_declare(byte_form form, std::string_view encoding)
{
    const auto is = [&](std::string_view name) { return is_same_name(encoding, name); };
    switch (form) {
        case byte_form::bytes:
            return is("UTF-8") || is("ISO-8859-1") || is("US-ASCII");
        case byte_form::marked_bytes:
            return is("UTF-8");
        case byte_form::little_endian_pairs:
            return is("UTF-16") || is("UTF-16LE");
        case byte_form::big_endian_pairs:
            return is("UTF-16") || is("UTF-16BE");
    }
    return false;
}

std::string_view declared_encoding(std::string_view text)
{
    xml_scanner scanner(text);
    if (scanner.at_declaration()) scanner.take_declaration();
    return scanner.encoding();
}

void end_text(document_text& document, std::size_t size, xml_stream_parser::error_type fault)
{
    document.text.resize(size);
    document.fault_at_end = fault;
}

void decode_pairs(std::string_view bytes, bool is_big_endian, document_text& document)
{
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
            document.fault_at_end = xml_stream_parser::unexpected_character;
            return;
        }
        unicode::append_utf8(code_point, document.text);
        i += static_cast<std::size_t>(at - units) * 2;
    }
}

void decode_latin1(document_text& document)
{
    strings::ustring8 text;
    text.reserve(document.text.size());
    for (const char byte : document.text) unicode::append_utf8(static_cast<unsigned char>(byte), text);
    document.text = std::move(text);
}

void check_ascii(document_text& document)
{
    const auto& text = document.text;
    const auto high = std::find_if(text.begin(), text.end(), [](char byte) { return (byte & 0x80) != 0; });
    if (high != text.end()) {
        end_text(document, static_cast<std::size_t>(high - text.begin()), xml_stream_parser::unexpected_character);
    }
}

// Eight bytes at once, the benchmark's row "parse" pays for it: true when all are from 0x20 to 0x7F. A smaller byte
// turns the top bit of its own difference on, a larger one has it on already.
bool are_plain(const char* bytes)
{
    constexpr std::uint64_t ones = 0x0101010101010101;
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, sizeof word);
    return ((word | (word - ones * 0x20)) & (ones * 0x80)) == 0;
}

// Ends the text before its first ill-formed sequence or character that no XML document may hold.
void check_characters(document_text& document)
{
    const char* const begin = document.text.data();
    const char* const end = begin + document.text.size();
    for (const char* at = begin; at != end;) {
        const char* const character = at;
        if (end - at >= 8 && are_plain(at)) {
            at += 8;
        } else if (is_byte(*at, char_byte)) {
            ++at;
        } else if (!is_char(unicode::take_utf8(at, end))) {
            end_text(document, static_cast<std::size_t>(character - begin), xml_stream_parser::unexpected_character);
            return;
        }
    }
}

// CR LF and a lone CR become LF.
void normalise_line_ends(strings::ustring8& text)
{
    std::size_t to = text.find('\r');
    if (to == strings::ustring8::npos) return;
    for (std::size_t from = to; from < text.size(); ++from) {
        if (text[from] == '\n' && text[from - 1] == '\r') continue;
        text[to++] = text[from];
    }
    text.resize(to);
    std::replace(text.begin(), text.end(), '\r', '\n');
}

}  // namespace

document_text decode_document(strings::ustring8 bytes)
{
    document_text document;
    const opening found = look_at(bytes);
    if (found.form == byte_form::bytes || found.form == byte_form::marked_bytes) {
        bytes.erase(0, found.mark_size);
        document.text = std::move(bytes);
    } else {
        const auto pairs = std::string_view(bytes).substr(found.mark_size);
        decode_pairs(pairs, found.form == byte_form::big_endian_pairs, document);
        bytes = strings::ustring8();
    }
    const std::string_view encoding = declared_encoding(document.text);
    if (!encoding.empty() && !may_declare(found.form, encoding)) {
        end_text(document, static_cast<std::size_t>(encoding.data() - document.text.data()),
                 xml_stream_parser::fatal_error);
    } else if (is_same_name(encoding, "ISO-8859-1")) {
        decode_latin1(document);
    } else if (is_same_name(encoding, "US-ASCII")) {
        check_ascii(document);
    }
    check_characters(document);
    normalise_line_ends(document.text);
    return document;
}

}  // namespace NUVEK_2_18::parser
