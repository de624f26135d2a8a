// UTF-8 and UTF-16 strings, and the conversion between them.
//
// A ustring8 is a string of bytes: two are equal if they have the same length and bytes; one is less if its first
// differing byte is smaller as an unsigned number, or if it is a prefix of the other. Nothing is validated or
// normalized.
#pragma once

#include <string>

// Marks exported symbols. The build defines DATA_MAPPER4_BUILD for a shared library and DATA_MAPPER4_STATIC for a static
// one. Hosts that link the static library must define DATA_MAPPER4_STATIC; its packages for CMake and pkg-config do that.
#if defined(DATA_MAPPER4_STATIC)
#define DATA_MAPPER4_API
#elif !defined(_WIN32)
#define DATA_MAPPER4_API __attribute__((visibility("default")))
#elif defined(DATA_MAPPER4_BUILD)
#define DATA_MAPPER4_API __declspec(dllexport)
#else
#define DATA_MAPPER4_API __declspec(dllimport)
#endif

namespace NUVEK_2_18::strings {

using ustring8 = std::string;
using ustring16 = std::u16string;

// Returns the text in UTF-16. Malformed UTF-8 is not a failure: every maximal malformed run of bytes, as Unicode
// defines it, becomes one U+FFFD. Cost: linear. Safe to call from any thread.
DATA_MAPPER4_API ustring16 utf8_to_utf16(const ustring8& text);

}  // namespace NUVEK_2_18::strings
