// UTF-8 and UTF-16 strings, and the conversion between them.
//
// A ustring8 is a plain string of bytes: equal means same length and same bytes, less means the first differing byte
// is smaller as an unsigned number, or the string is a prefix of the other. Nothing is validated or normalised.
#pragma once

#include <string>

// What the shared library exports. DATA_MAPPER4_BUILD is set while the library itself is built.
#if !defined(_WIN32)
#define DATA_MAPPER4_API __attribute__((visibility("default")))
#elif defined(DATA_MAPPER4_BUILD)
#define DATA_MAPPER4_API __declspec(dllexport)
#else
#define DATA_MAPPER4_API __declspec(dllimport)
#endif

namespace NUVEK_2_18::strings {

using ustring8 = std::string;
using ustring16 = std::u16string;

// The same text in UTF-16. Malformed UTF-8 does not fail: every maximal malformed run of bytes, as Unicode defines it,
// becomes one U+FFFD. Cost: linear. Safe to call from any thread.
DATA_MAPPER4_API ustring16 utf8_to_utf16(const ustring8& text);

}  // namespace NUVEK_2_18::strings
