#include "platform/unicode.h"

namespace NUVEK_2_18::unicode {

namespace {

unsigned byte_at(const char* at)
{
    return static_cast<unsigned char>(*at);
}

// The number of continuation bytes after a lead byte, and the bounds of the first of them. Narrower bounds exclude
// overlong forms, surrogates and values above U+10FFFF.
struct sequence
{
    int more = 0;
    unsigned low = 0x80;
    unsigned high = 0xBF;
};

sequence sequence_of(unsigned lead)
{
    sequence follow;
    if (lead >= 0xC2 && lead <= 0xDF) follow.more = 1;
    if (lead >= 0xE0 && lead <= 0xEF) follow.more = 2;
    if (lead >= 0xF0 && lead <= 0xF4) follow.more = 3;
    if (lead == 0xE0) follow.low = 0xA0;
    if (lead == 0xED) follow.high = 0x9F;
    if (lead == 0xF0) follow.low = 0x90;
    if (lead == 0xF4) follow.high = 0x8F;
    return follow;
}

bool is_high_surrogate(char16_t unit)
{
    return unit >= 0xD800 && unit <= 0xDBFF;
}

bool is_low_surrogate(char16_t unit)
{
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

}  // namespace

char32_t take_utf8(const char*& at, const char* end)
{
    const unsigned lead = byte_at(at++);
    if (lead < 0x80) return lead;
    sequence follow = sequence_of(lead);
    if (follow.more == 0) return malformed;
    char32_t code_point = lead & (0x3FU >> follow.more);
    for (; follow.more > 0; --follow.more) {
        if (at == end || byte_at(at) < follow.low || byte_at(at) > follow.high) return malformed;
        code_point = code_point << 6 | (byte_at(at++) & 0x3FU);
        follow.low = 0x80;
        follow.high = 0xBF;
    }
    return code_point;
}

char32_t take_utf16(const char16_t*& at, const char16_t* end)
{
    const char16_t unit = *at++;
    if (is_low_surrogate(unit)) return malformed;
    if (!is_high_surrogate(unit)) return unit;
    if (at == end || !is_low_surrogate(*at)) return malformed;
    return 0x10000 + ((static_cast<char32_t>(unit) - 0xD800) << 10) + (static_cast<char32_t>(*at++) - 0xDC00);
}

char* write_utf8(char32_t code_point, char* to)
{
    const auto write = [&to](char32_t byte) { *to++ = static_cast<char>(static_cast<unsigned char>(byte)); };
    if (code_point < 0x80) {
        write(code_point);
        return to;
    }
    if (code_point < 0x800) {
        write(0xC0 | code_point >> 6);
    } else {
        if (code_point < 0x10000) {
            write(0xE0 | code_point >> 12);
        } else {
            write(0xF0 | code_point >> 18);
            write(0x80 | (code_point >> 12 & 0x3F));
        }
        write(0x80 | (code_point >> 6 & 0x3F));
    }
    write(0x80 | (code_point & 0x3F));
    return to;
}

void append_utf8(char32_t code_point, strings::ustring8& text)
{
    char bytes[4];
    text.append(bytes, write_utf8(code_point, bytes));
}

bool append_utf16(const strings::ustring16& from, strings::ustring8& to)
{
    to.reserve(to.size() + from.size());
    const char16_t* at = from.data();
    const char16_t* const end = at + from.size();
    while (at != end) {
        const char32_t code_point = take_utf16(at, end);
        if (code_point == malformed) return false;
        append_utf8(code_point, to);
    }
    return true;
}

}  // namespace NUVEK_2_18::unicode
