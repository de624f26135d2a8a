// Internal: scans bytes in blocks; the `parse` and `load` benchmarks justify it.
//
// The functions without an `end` stop at a zero byte at the latest: no text contains one, and a text_buffer has some
// after its text. Most functions read whole blocks, so a block's size of bytes after the place where they stop must be
// readable.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/xml_characters.h"

#if defined(__SSE2__) || defined(_M_X64)
#define DATA_MAPPER4_SSE2
#include <emmintrin.h>
#endif
#if defined(_MSC_VER)
#include <intrin.h>
#endif

namespace NUVEK_2_18::parser {

// The number of zero bits below the lowest set bit.
inline unsigned lowest_bit(std::uint64_t bits)
{
#if defined(_MSC_VER)
    unsigned long index = 0;
    if (_BitScanForward(&index, static_cast<unsigned long>(bits)) != 0) return index;
    _BitScanForward(&index, static_cast<unsigned long>(bits >> 32));
    return index + 32;
#else
    return static_cast<unsigned>(__builtin_ctzll(bits));
#endif
}

#if defined(DATA_MAPPER4_SSE2)

// Thirty-two bytes. A mask has one bit for each byte, the lowest for the first byte.
class byte_block
{
public:
    static constexpr std::ptrdiff_t size = 32;
    using mask = std::uint64_t;

    explicit byte_block(const char* at) : m_halves{load(at), load(at + size / 2)} {}

    static unsigned first(mask found) { return lowest_bit(found); }

    template <class... characters>
    mask find(characters... wanted) const
    {
        return mask_of([&](__m128i half) { return (... | vector{_mm_cmpeq_epi8(half, _mm_set1_epi8(wanted))}); });
    }

    // Bytes below 0x20.
    mask find_controls() const
    {
        const __m128i last = _mm_set1_epi8(0x1F);
        return mask_of([=](__m128i half) { return vector{_mm_cmpeq_epi8(_mm_min_epu8(half, last), half)}; });
    }

    // Bytes other than 0x20 to 0x7F, LF and TAB.
    mask find_uncommon() const
    {
        return ~mask_of([](__m128i half) {
            const vector printable{_mm_cmpgt_epi8(half, _mm_set1_epi8(0x1F))};
            const vector line_end{_mm_cmpeq_epi8(half, _mm_set1_epi8('\n'))};
            const vector tab{_mm_cmpeq_epi8(half, _mm_set1_epi8('\t'))};
            return printable | line_end | tab;
        }) & 0xFFFFFFFF;
    }

    unsigned count(char character) const
    {
        const __m128i wanted = _mm_set1_epi8(character);
        const __m128i counts = _mm_add_epi8(_mm_cmpeq_epi8(m_halves[0], wanted), _mm_cmpeq_epi8(m_halves[1], wanted));
        // Each byte found is -1.
        const __m128i sums = _mm_sad_epu8(_mm_sub_epi8(_mm_setzero_si128(), counts), _mm_setzero_si128());
        return static_cast<unsigned>(_mm_cvtsi128_si32(sums) + _mm_extract_epi16(sums, 4));
    }

private:
    struct vector
    {
        __m128i bytes;
        friend vector operator|(vector a, vector b) { return {_mm_or_si128(a.bytes, b.bytes)}; }
    };

    static __m128i load(const char* at)
    {
        return _mm_loadu_si128(static_cast<const __m128i*>(static_cast<const void*>(at)));
    }

    template <class function>
    mask mask_of(function matches) const
    {
        const auto low = static_cast<unsigned>(_mm_movemask_epi8(matches(m_halves[0]).bytes));
        const auto high = static_cast<unsigned>(_mm_movemask_epi8(matches(m_halves[1]).bytes));
        return low | high << 16;
    }

    __m128i m_halves[2];
};

#else

// Eight bytes in one word, the first one lowest. A mask has the top bit of each byte found.
class byte_block
{
public:
    static constexpr std::ptrdiff_t size = 8;
    using mask = std::uint64_t;

    explicit byte_block(const char* at)
    {
        for (std::ptrdiff_t i = size; i-- > 0;) m_bytes = m_bytes << 8 | static_cast<unsigned char>(at[i]);
    }

    static unsigned first(mask found) { return lowest_bit(found) / 8; }

    template <class... characters>
    mask find(characters... wanted) const
    {
        return (... | zeros(m_bytes ^ ones * static_cast<unsigned char>(wanted)));
    }

    unsigned count(char character) const
    {
        unsigned number = 0;
        for (mask found = find(character); found != 0; found &= found - 1) ++number;
        return number;
    }

    mask find_controls() const { return zeros(m_bytes & (ones * 0xE0)); }

    mask find_uncommon() const { return ((find_controls() | m_bytes) & tops) & ~find('\n', '\t'); }

private:
    static constexpr mask ones = 0x0101010101010101;
    static constexpr mask tops = ones * 0x80;
    static mask zeros(mask bytes) { return ~(((bytes & ~tops) + ~tops) | bytes) & tops; }

    mask m_bytes = 0;
};

#endif

inline std::string_view view(const char* begin, const char* end)
{
    return {begin, static_cast<std::size_t>(end - begin)};
}

// The first of the wanted characters, or the zero byte.
template <class... characters>
const char* find_first(const char* at, characters... wanted)
{
    for (;; at += byte_block::size) {
        const byte_block::mask found = byte_block(at).find(wanted..., '\0');
        if (found != 0) return at + byte_block::first(found);
    }
}

// The first byte that ends an attribute value or is not taken literally: its quote, `<`, `&` or a control character.
inline const char* find_value_stop(const char* at, char quote)
{
    for (;; at += byte_block::size) {
        const byte_block block(at);
        const byte_block::mask found = block.find(quote, '<', '&') | block.find_controls();
        if (found != 0) return at + byte_block::first(found);
    }
}

// The end of a run of a name's ASCII characters.
inline const char* skip_name_bytes(const char* at)
{
    while (is_byte(*at, name_byte)) ++at;
    return at;
}

// The first byte before `end` other than 0x20 to 0x7F, LF and TAB; `end` if there is none.
inline const char* find_uncommon(const char* at, const char* end)
{
    for (; at < end; at += byte_block::size) {
        const byte_block::mask found = byte_block(at).find_uncommon();
        if (found != 0) return std::min(at + byte_block::first(found), end);
    }
    return end;
}

// The number of line feeds before `end`.
inline std::size_t count_lines(const char* at, const char* end)
{
    std::size_t lines = 0;
    for (; end - at >= byte_block::size; at += byte_block::size) lines += byte_block(at).count('\n');
    return lines + static_cast<std::size_t>(std::count(at, end, '\n'));
}

}  // namespace NUVEK_2_18::parser
