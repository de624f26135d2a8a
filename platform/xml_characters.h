// Internal: the character classes of XML 1.0, fifth edition.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace NUVEK_2_18::parser {

// What one byte of UTF-8 may be. Bytes from 0x80 on carry no class: they belong to a longer sequence.
enum byte_class : std::uint8_t
{
    name_start_byte = 1,    // an ASCII character that may begin a name
    name_byte = 2,          // an ASCII character that may stand in one
    space_byte = 4,         // white space
    text_stop = 8,          // where a run of character data needs a look: < & ]
    value_stop = 16,        // where an attribute value needs one: < & " '
    value_change = 32,      // where a value is not what it says: & and white space
    declaration_stop = 64,  // where a declaration inside a document type needs a look: < > " '
    char_byte = 128,        // an ASCII character that a document may hold at all
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

// True also for the empty text.
bool is_space(std::string_view text);

// The productions Char, NameStartChar and NameChar.
bool is_char(char32_t code_point);
bool is_name_start(char32_t code_point);
bool is_name(char32_t code_point);

}  // namespace NUVEK_2_18::parser
