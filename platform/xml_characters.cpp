#include "platform/xml_characters.h"

#include <algorithm>
#include <iterator>

namespace NUVEK_2_18::parser {

namespace {

constexpr bool is_one_of(unsigned byte, std::string_view bytes)
{
    return bytes.find(static_cast<char>(byte)) != std::string_view::npos;
}

constexpr bool is_letter(unsigned byte)
{
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z');
}

constexpr unsigned classes_of(unsigned byte)
{
    unsigned classes = 0;
    const bool starts_name = is_letter(byte) || is_one_of(byte, "_:");
    if (starts_name) classes |= name_start_byte;
    if (starts_name || (byte >= '0' && byte <= '9') || is_one_of(byte, "-.")) classes |= name_byte;
    if (is_one_of(byte, " \t\r\n")) classes |= space_byte;
    if (is_one_of(byte, "& \t\r\n")) classes |= value_change;
    if (byte >= 0x20 || is_one_of(byte, "\t\r\n")) classes |= char_byte;
    return classes;
}

constexpr std::array<std::uint8_t, 256> make_byte_classes()
{
    std::array<std::uint8_t, 256> classes = {};
    for (unsigned byte = 0; byte < 0x80; ++byte) classes[byte] = static_cast<std::uint8_t>(classes_of(byte));
    return classes;
}

struct range
{
    char32_t first;
    char32_t last;
};

// The non-ASCII part of NameStartChar, and what NameChar adds to it.
constexpr range name_start_ranges[] = {
    {0xC0, 0xD6},     {0xD8, 0xF6},     {0xF8, 0x2FF},    {0x370, 0x37D},   {0x37F, 0x1FFF},  {0x200C, 0x200D},
    {0x2070, 0x218F}, {0x2C00, 0x2FEF}, {0x3001, 0xD7FF}, {0xF900, 0xFDCF}, {0xFDF0, 0xFFFD}, {0x10000, 0xEFFFF},
};
constexpr range name_ranges[] = {{0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040}};

template <std::size_t size>
bool is_within(const range (&ranges)[size], char32_t code_point)
{
    return std::any_of(std::begin(ranges), std::end(ranges),
                       [=](const range& r) { return code_point >= r.first && code_point <= r.last; });
}

}  // namespace

constexpr std::array<std::uint8_t, 256> byte_classes = make_byte_classes();

bool is_space(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char byte) { return is_space(byte); });
}

bool is_char(char32_t code_point)
{
    if (code_point < 0x80) return is_byte(static_cast<char>(code_point), char_byte);
    return code_point <= 0xD7FF || (code_point >= 0xE000 && code_point <= 0xFFFD) ||
           (code_point >= 0x10000 && code_point <= 0x10FFFF);
}

bool is_name_start(char32_t code_point)
{
    if (code_point < 0x80) return is_byte(static_cast<char>(code_point), name_start_byte);
    return is_within(name_start_ranges, code_point);
}

bool is_name(char32_t code_point)
{
    if (code_point < 0x80) return is_byte(static_cast<char>(code_point), name_byte);
    return is_within(name_start_ranges, code_point) || is_within(name_ranges, code_point);
}

}  // namespace NUVEK_2_18::parser
