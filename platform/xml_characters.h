// Internal: the character classes of XML 1.0, fifth edition.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace NUVEK_2_18::parser {

// The classes of a byte of UTF-8. Bytes from 0x80 on have none, since they are part of a longer sequence.
enum byte_class : std::uint8_t
{
    name_start_byte = 1,  // an ASCII character that may begin a name
    name_byte = 2,        // an ASCII character that a name may contain
    space_byte = 4,       // white space
    value_change = 8,     // & and white space, which normalizing an attribute value resolves or replaces
    char_byte = 16,       // an ASCII character that a document may contain at all
};

extern const std::array<std::uint8_t, 256> byte_classes;

inline bool is_byte(char byte, unsigned classes)
{
    return (byte_classes[static_cast<unsigned char>(byte)] & classes) != 0;
}

inline bool is_space(char byte)
{
    return is_byte(byte, space_byte);
}

inline bool is_non_ascii(char byte)
{
    return (byte & 0x80) != 0;
}

// Also true for an empty text.
bool is_space(std::string_view text);

// The productions Char, NameStartChar and NameChar.
bool is_char(char32_t code_point);
bool is_name_start(char32_t code_point);
bool is_name(char32_t code_point);

}  // namespace NUVEK_2_18::parser
