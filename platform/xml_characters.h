// Internal: the character classes of XML 1.0, fifth edition.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace NUVEK_2_18::parser {

// What one byte of UTF-8 may be. Bytes from 0x80 on carry no class: they belong to a longer sequence.
enum byte_class : std::uint8_t
{
    name_start_byte = 1,  // an ASCII character that may begin a name
    name_byte = 2,        // an ASCII character that a name may contain
    space_byte = 4,       // white space
    value_change = 8,     // what an attribute value does not contain once it is normalised: & and white space
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

// True also for the empty text.
bool is_space(std::string_view text);

// The productions Char, NameStartChar and NameChar.
bool is_char(char32_t code_point);
bool is_name_start(char32_t code_point);
bool is_name(char32_t code_point);

}  // namespace NUVEK_2_18::parser
