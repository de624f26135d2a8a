// Internal: reads and writes code points in UTF-8 and UTF-16.
#pragma once

#include "platform/ustring.h"

namespace NUVEK_2_18::unicode {

// What the take functions return for a malformed sequence; no code point has this value.
constexpr char32_t malformed = 0xFFFFFFFF;

// Whether a byte of UTF-8 is in a character, but does not begin it.
inline bool is_continuation(char byte)
{
    return (byte & 0xC0) == 0x80;
}

// Takes the code point that begins at `at`, which must be before `end`. Moves `at` past it, or past the maximal
// malformed run of bytes. Overlong forms, surrogates and values above U+10FFFF are malformed.
char32_t take_utf8(const char*& at, const char* end);

// The same for UTF-16; a surrogate without its other half is malformed.
char32_t take_utf16(const char16_t*& at, const char16_t* end);

// Writes the code point at `to`, in at most four bytes. Returns the place after it.
char* write_utf8(char32_t code_point, char* to);

void append_utf8(char32_t code_point, strings::ustring8& text);

// Appends `from` to `to` up to the first malformed unit. Returns true if there is none.
bool append_utf16(const strings::ustring16& from, strings::ustring8& to);

}  // namespace NUVEK_2_18::unicode
