#include "platform/ustring.h"

#include "platform/unicode.h"

namespace NUVEK_2_18::strings {

ustring16 utf8_to_utf16(const ustring8& text)
{
    constexpr char32_t replacement = 0xFFFD;
    ustring16 result;
    result.reserve(text.size());
    const char* at = text.data();
    const char* const end = at + text.size();
    while (at != end) {
        char32_t code_point = unicode::take_utf8(at, end);
        if (code_point == unicode::malformed) code_point = replacement;
        if (code_point < 0x10000) {
            result.push_back(static_cast<char16_t>(code_point));
        } else {
            result.push_back(static_cast<char16_t>(0xD800 + ((code_point - 0x10000) >> 10)));
            result.push_back(static_cast<char16_t>(0xDC00 + (code_point & 0x3FF)));
        }
    }
    return result;
}

}  // namespace NUVEK_2_18::strings
