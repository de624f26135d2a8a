#include "platform/plain_markup.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "platform/byte_runs.h"
#include "platform/xml_characters.h"

namespace NUVEK_2_18::parser {

namespace {

// The first eight bytes of a name, or all of it and zeros. It stands in a text, so that there are eight to read.
std::uint64_t first_bytes(std::string_view name)
{
    const char* const begin = name.data();
    std::uint64_t bytes = 0;
    // The same number on any processor; one load for the compiler where the lowest byte comes first.
    for (unsigned i = 0; i < sizeof bytes; ++i) bytes |= std::uint64_t{static_cast<unsigned char>(begin[i])} << 8 * i;
    return name.size() < sizeof bytes ? bytes & ((std::uint64_t{1} << 8 * name.size()) - 1) : bytes;
}

// Behind the reference at `at`, which is a `&`, if it is one to a predefined entity.
const char* skip_plain_reference(const char* at)
{
    constexpr std::string_view entities[] = {"&amp;", "&lt;", "&gt;", "&quot;", "&apos;"};
    for (const std::string_view entity : entities) {
        if (std::strncmp(at, entity.data(), entity.size()) == 0) return at + entity.size();
    }
    return nullptr;
}

// The quote that ends the value, if the value is plain.
const char* find_plain_value_end(const char* at, char quote)
{
    at = find_first(at, quote, '<', '&');
    while (*at == '&') {
        at = skip_plain_reference(at);
        if (at == nullptr) return nullptr;
        at = find_first(at, quote, '<', '&');
    }
    return *at == quote ? at : nullptr;
}

}  // namespace

bool few_names::add(std::string_view name)
{
    if (m_size == capacity) return false;
    const entry added{first_bytes(name), name};
    // Names that differ in this mostly differ in their bit, and need not be compared.
    const std::uint64_t bit = std::uint64_t{1} << ((added.first + name.size()) * 0x9E3779B97F4A7C15 >> 58);
    if ((m_bits & bit) != 0 && has(added)) return false;
    m_bits |= bit;
    m_entries[m_size++] = added;
    return true;
}

bool few_names::has(const entry& wanted) const
{
    return std::any_of(m_entries, m_entries + m_size,
                       [&](const entry& each) { return each.first == wanted.first && each.name == wanted.name; });
}

plain_tag plain_start_tag_finder::find(const char* at)
{
    plain_tag tag;
    if (!is_byte(*++at, name_start_byte)) return tag;
    const char* begin = at;
    at = skip_name_bytes(at);
    tag.name = view(begin, at);
    std::string_view first;
    m_names.clear();
    for (;;) {
        const bool is_spaced = is_space(*at);
        if (is_spaced) at = skip_space(at);
        tag.is_empty_element = *at == '/';
        if (tag.is_empty_element) ++at;
        if (*at == '>') break;
        if (tag.is_empty_element || !is_spaced || !is_byte(*at, name_start_byte)) return tag;
        begin = at;
        at = skip_name_bytes(at);
        const std::string_view name = view(begin, at);
        // Most tags have one attribute, whose name differs from all others.
        if (first.empty()) {
            first = name;
        } else if ((m_names.empty() && !m_names.add(first)) || !m_names.add(name)) {
            return tag;
        }
        if (*at != '=') return tag;
        const char quote = *++at;
        if (quote != '"' && quote != '\'') return tag;
        at = find_plain_value_end(at + 1, quote);
        if (at == nullptr) return tag;
        ++at;
    }
    tag.end = at + 1;
    return tag;
}

const char* find_plain_end_tag(const char* at, std::string_view name)
{
    at += 2;
    const bool is_short = name.size() <= sizeof(std::uint64_t);
    const bool is_same = is_short ? first_bytes({at, name.size()}) == first_bytes(name)
                                  : std::strncmp(at, name.data(), name.size()) == 0;
    return is_same && at[name.size()] == '>' ? at + name.size() + 1 : nullptr;
}

}  // namespace NUVEK_2_18::parser
