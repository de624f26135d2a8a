#include "data_mapper/report/wording.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

#include "platform/unicode.h"

namespace data_mapper4 {

namespace {

namespace unicode = NUVEK_2_18::unicode;

constexpr std::size_t longest_name = 80;
constexpr std::size_t most_names = 12;

struct range
{
    char32_t first;
    char32_t last;
};

// Control characters, and those that change the direction of text or separate lines.
bool is_control(char32_t code_point)
{
    constexpr range controls[] = {{0, 0x1F},        {0x7F, 0x9F},     {0x61C, 0x61C},
                                  {0x200B, 0x200F}, {0x2028, 0x202E}, {0x2060, 0x206F},
                                  {0xFEFF, 0xFEFF}, {0xFFF9, 0xFFFB}, {0xE0000, 0xE0FFF}};
    return std::any_of(std::begin(controls), std::end(controls),
                       [&](range each) { return code_point >= each.first && code_point <= each.last; });
}

ustring8 escape(char32_t code_point)
{
    if (code_point == '\n') return "\\n";
    if (code_point == '\r') return "\\r";
    if (code_point == '\t') return "\\t";
    constexpr char digits[] = "0123456789ABCDEF";
    ustring8 number;
    for (; code_point != 0 || number.empty(); code_point /= 16) number.insert(number.begin(), digits[code_point % 16]);
    return "\\u{" + number + '}';
}

constexpr const char* replacement = "\xEF\xBF\xBD";

}  // namespace

ustring8 escaped(std::string_view name)
{
    ustring8 text;
    const char* at = name.data();
    const char* const end = at + name.size();
    for (std::size_t size = 0; at != end; ++size) {
        if (size == longest_name) return text + "...";
        const char32_t code_point = unicode::take_utf8(at, end);
        if (code_point == unicode::malformed) {
            text += replacement;
        } else if (is_control(code_point)) {
            text += escape(code_point);
        } else {
            unicode::append_utf8(code_point, text);
        }
    }
    return text;
}

ustring8 in_quotes(std::string_view name)
{
    return '"' + escaped(name) + '"';
}

ustring8 as_tag(std::string_view name)
{
    return '<' + escaped(name) + '>';
}

ustring8 listed(const std::vector<ustring8>& names)
{
    ustring8 text;
    for (std::size_t i = 0; i < std::min(names.size(), most_names); ++i)
        text += (i == 0 ? "" : ", ") + escaped(names[i]);
    return names.size() > most_names ? text + ", ..." : text;
}

ustring8 did_you_mean(const ustring8& what)
{
    return what.empty() ? "" : "; did you mean " + what + '?';
}

// fs::path converts as well, but throws if it cannot.
NUVEK_2_18::strings::ustring16 path_units(const std::filesystem::path& path)
{
    const auto& native = path.native();
    if constexpr (sizeof(std::filesystem::path::value_type) == 1) {
        return NUVEK_2_18::strings::utf8_to_utf16(ustring8(native.begin(), native.end()));
    } else {
        return {native.begin(), native.end()};
    }
}

ustring8 path_text(const std::filesystem::path& path)
{
    const NUVEK_2_18::strings::ustring16 units = path_units(path);
    ustring8 text;
    const char16_t* at = units.data();
    for (const char16_t* const end = at + units.size(); at != end;) {
        const char32_t code_point = unicode::take_utf16(at, end);
        unicode::append_utf8(code_point == unicode::malformed ? 0xFFFD : code_point, text);
    }
    return text;
}

ustring8 shortened(const ustring8& text, std::size_t most_bytes)
{
    if (text.size() <= most_bytes) return text;
    const ustring8 dots = "...";
    std::size_t head = (most_bytes - dots.size()) / 2;
    std::size_t tail = text.size() - head;
    while (head != 0 && unicode::is_continuation(text[head])) --head;
    while (tail != text.size() && unicode::is_continuation(text[tail])) ++tail;
    return text.substr(0, head) + dots + text.substr(tail);
}

ustring8 printable(std::string_view line)
{
    ustring8 text;
    const char* at = line.data();
    for (const char* const end = at + line.size(); at != end;) {
        const char32_t code_point = unicode::take_utf8(at, end);
        const bool is_kept = code_point == '\t' || (code_point != unicode::malformed && !is_control(code_point));
        if (is_kept) unicode::append_utf8(code_point, text);
        if (!is_kept) text += replacement;
    }
    return text;
}

}  // namespace data_mapper4
