#include "platform/xml_reference.h"

#include <algorithm>
#include <iterator>

#include "platform/unicode.h"
#include "platform/xml_characters.h"

namespace NUVEK_2_18::parser {

namespace {

int digit_value(char character, bool is_hexadecimal)
{
    if (character >= '0' && character <= '9') return character - '0';
    const int letter = (character | 0x20) - 'a';
    return is_hexadecimal && letter >= 0 && letter < 6 ? letter + 10 : -1;
}

// The number that the digits at the cursor form; malformed if there are none. Numbers beyond Unicode are all returned
// as the first one beyond it, so that no number of digits overflows.
char32_t take_number(xml_cursor& cursor, bool is_hexadecimal)
{
    constexpr char32_t beyond = 0x110000;
    char32_t number = unicode::malformed;
    const char* at = cursor.at();
    for (int digit = 0; (digit = digit_value(*at, is_hexadecimal)) >= 0; ++at) {
        if (number == unicode::malformed) number = 0;
        number = std::min<char32_t>(number * (is_hexadecimal ? 16 : 10) + static_cast<char32_t>(digit), beyond);
    }
    cursor.go_to(at);
    return number;
}

// CharRef = '&#' [0-9]+ ';' | '&#x' [0-9a-fA-F]+ ';'      the cursor is at the '#'
bool take_character_reference(xml_cursor& cursor, const char* begin, char32_t& code_point)
{
    const bool is_hexadecimal = cursor.at()[1] == 'x';
    cursor.go_to(cursor.at() + (is_hexadecimal ? 2 : 1));
    code_point = take_number(cursor, is_hexadecimal);
    if (code_point == unicode::malformed) return cursor.fail(xml_fault::bad_character_reference);
    if (!cursor.take(";", xml_fault::missing_semicolon)) return false;
    return is_char(code_point) || cursor.fail_at(begin, xml_fault::bad_character_reference);
}

// EntityRef = '&' Name ';'      the cursor is at the Name
bool take_entity_reference(xml_cursor& cursor, const char* begin, char32_t& code_point)
{
    struct entity
    {
        std::string_view name;
        char32_t code_point;
    };
    constexpr entity predefined[] = {{"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}};
    std::string_view name;
    if (!cursor.take_name(name)) return cursor.fail(xml_fault::bare_ampersand);
    if (!cursor.take(";", xml_fault::missing_semicolon)) return false;
    const auto* const found = std::find_if(std::begin(predefined), std::end(predefined),
                                           [&](const entity& each) { return each.name == name; });
    if (found == std::end(predefined)) return cursor.fail_at(begin, xml_fault::unknown_entity);
    code_point = found->code_point;
    return true;
}

// Appends raw text. `find_change` finds the next byte that is not appended as it is: a `&` or white space.
template <class finder>
void append_resolved(std::string_view raw, finder find_change, strings::ustring8& to)
{
    const char* const end = raw.data() + raw.size();
    for (const char* at = raw.data(); at != end;) {
        const char* const change = find_change(at, end);
        to.append(at, change);
        at = change;
        if (at == end) break;
        char32_t code_point = ' ';
        xml_cursor cursor(view(at, end));
        if (*at == '&') {
            take_reference(cursor, code_point);
            at = cursor.at();
        } else {
            ++at;
        }
        unicode::append_utf8(code_point, to);
    }
}

}  // namespace

bool take_reference(xml_cursor& cursor, char32_t& code_point)
{
    const char* const begin = cursor.at();
    cursor.go_to(begin + 1);
    return *cursor == '#' ? take_character_reference(cursor, begin, code_point)
                          : take_entity_reference(cursor, begin, code_point);
}

void append_text(std::string_view raw, strings::ustring8& to)
{
    append_resolved(
        raw, [](const char* at, const char* end) { return std::find(at, end, '&'); }, to);
}

void append_value(std::string_view raw, strings::ustring8& to)
{
    const auto is_change = [](char byte) { return is_byte(byte, value_change); };
    append_resolved(
        raw, [&](const char* at, const char* end) { return std::find_if(at, end, is_change); }, to);
}

}  // namespace NUVEK_2_18::parser
