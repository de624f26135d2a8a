#include "platform/plain_markup.h"

#include <cstdint>
#include <cstring>

#include "platform/byte_runs.h"
#include "platform/xml_characters.h"

namespace NUVEK_2_18::parser {

namespace {

// Names that must differ, each with its first bytes at hand. More of them than a tag has as a rule are for a method
// whose cost does not grow with their square.
class few_names
{
public:
    // Adds a name; false when there is no room for it, or when it is one of the others.
    bool add(std::string_view name)
    {
        if (m_size == capacity) return false;
        const entry added{first_bytes(name), name};
        for (std::size_t i = 0; i < m_size; ++i) {
            if (m_entries[i].first == added.first && m_entries[i].name == name) return false;
        }
        m_entries[m_size++] = added;
        return true;
    }

private:
    static constexpr std::size_t capacity = 8;

    struct entry
    {
        std::uint64_t first;
        std::string_view name;
    };

    // Names stand in a text with bytes behind it, so that eight can always be read.
    static std::uint64_t first_bytes(std::string_view name)
    {
        std::uint64_t bytes = 0;
        std::memcpy(&bytes, name.data(), sizeof bytes);
        return name.size() < sizeof bytes ? bytes & ((std::uint64_t{1} << 8 * name.size()) - 1) : bytes;
    }

    std::size_t m_size = 0;
    entry m_entries[capacity];
};

const char* skip_name(const char* at)
{
    while (is_byte(*at, name_byte)) ++at;
    return at;
}

std::string_view view(const char* begin, const char* end)
{
    return {begin, static_cast<std::size_t>(end - begin)};
}

}  // namespace

plain_tag find_plain_start_tag(const char* at)
{
    plain_tag tag;
    if (!is_byte(*++at, name_start_byte)) return tag;
    const char* begin = at;
    at = skip_name(at);
    tag.name = view(begin, at);
    few_names names;
    for (;;) {
        const bool is_spaced = is_space(*at);
        if (is_spaced) at = skip_space(at);
        tag.is_empty_element = *at == '/';
        if (tag.is_empty_element) ++at;
        if (*at == '>') break;
        if (tag.is_empty_element || !is_spaced || !is_byte(*at, name_start_byte)) return tag;
        begin = at;
        at = skip_name(at);
        if (!names.add(view(begin, at)) || *at != '=') return tag;
        const char quote = *++at;
        if (quote != '"' && quote != '\'') return tag;
        at = find_first(at + 1, quote, '<', '&');
        if (*at++ != quote) return tag;
    }
    tag.end = at + 1;
    return tag;
}

const char* find_plain_end_tag(const char* at, std::string_view name)
{
    at += 2;
    if (std::strncmp(at, name.data(), name.size()) != 0 || at[name.size()] != '>') return nullptr;
    return at + name.size() + 1;
}

}  // namespace NUVEK_2_18::parser
