// Internal: runs of bytes looked through a block at a time. The benchmark's rows "parse" and "load" pay for it.
//
// The functions without an end stop at a zero byte at the latest: no text holds one, and a text_buffer has them behind
// its text. All of them read whole blocks, so some bytes behind the place where they stop must be readable.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "platform/xml_characters.h"

#if defined(__SSE2__) || defined(_M_X64)
#define DATA_MAPPER4_SSE2
#include <emmintrin.h>
#endif
#if defined(_MSC_VER)
#include <intrin.h>
#endif

namespace NUVEK_2_18::parser {

// The number of zero bits below the lowest one that is set.
inline unsigned lowest_bit(std::uint64_t bits)
{
#if defined(_MSC_VER)
    unsigned long index = 0;
    _BitScanForward64(&index, bits);
    return index;
#else
    return static_cast<unsigned>(__builtin_ctzll(bits));
#endif
}

#if defined(DATA_MAPPER4_SSE2)

// Sixteen bytes. A mask has one bit for each byte, the lowest for the first.
class byte_block
{
public:
    static constexpr std::ptrdiff_t size = 16;
    using mask = std::uint64_t;

    explicit byte_block(const char* at)
        : m_bytes(_mm_loadu_si128(static_cast<const __m128i*>(static_cast<const void*>(at))))
    {
    }

    static unsigned first(mask found) { return lowest_bit(found); }

    template <class... characters>
    mask find(characters... wanted) const
    {
        return bits((... | vector{_mm_cmpeq_epi8(m_bytes, _mm_set1_epi8(wanted))}));
    }

    // Adds one to each byte of the counts where the character stands.
    __m128i count(char character, __m128i counts) const
    {
        return _mm_sub_epi8(counts, _mm_cmpeq_epi8(m_bytes, _mm_set1_epi8(character)));
    }

    // Bytes other than those from 0x20 to 0x7F, LF and TAB.
    mask find_not_plain() const
    {
        const vector printable{_mm_cmpgt_epi8(m_bytes, _mm_set1_epi8(0x1F))};
        const vector line_end{_mm_cmpeq_epi8(m_bytes, _mm_set1_epi8('\n'))};
        const vector tab{_mm_cmpeq_epi8(m_bytes, _mm_set1_epi8('\t'))};
        return bits(printable | line_end | tab) ^ 0xFFFF;
    }

private:
    struct vector
    {
        __m128i bytes;
        friend vector operator|(vector a, vector b) { return {_mm_or_si128(a.bytes, b.bytes)}; }
    };
    static mask bits(vector found) { return static_cast<unsigned>(_mm_movemask_epi8(found.bytes)); }

    __m128i m_bytes;
};

#else

// Eight bytes in one word, the first in its lowest byte. A mask has the top bit of each byte that is meant.
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

    mask find_not_plain() const
    {
        const mask small = zeros(m_bytes & (ones * 0xE0));
        return ((small | m_bytes) & tops) & ~find('\n', '\t');
    }

private:
    static constexpr mask ones = 0x0101010101010101;
    static constexpr mask tops = ones * 0x80;
    static mask zeros(mask bytes) { return ~(((bytes & ~tops) + ~tops) | bytes) & tops; }

    mask m_bytes = 0;
};

#endif

// The first of the wanted characters, or the zero byte.
template <class... characters>
const char* find_first(const char* at, characters... wanted)
{
    for (;; at += 2 * byte_block::size) {
        const byte_block::mask found = byte_block(at).find(wanted..., '\0');
        const byte_block::mask found2 = byte_block(at + byte_block::size).find(wanted..., '\0');
        const auto both = found | found2 << 16;
        if (both != 0) return at + byte_block::first(both);
    }
}

// Behind the ASCII characters of a name that stand at `at`.
inline const char* skip_name_bytes(const char* at)
{
    while (is_byte(*at, name_byte)) ++at;
    return at;
}

// The first byte before the end that is none of 0x20 to 0x7F, LF and TAB.
inline const char* find_not_plain(const char* at, const char* end)
{
    for (; at < end; at += byte_block::size) {
        const byte_block::mask found = byte_block(at).find_not_plain();
        if (found != 0) return std::min(at + byte_block::first(found), end);
    }
    return end;
}

// The number of line feeds before the end.
inline std::size_t count_lines(const char* at, const char* end)
{
    std::size_t lines = 0;
#if defined(DATA_MAPPER4_SSE2)
    // Each byte counts its own, up to what it can hold.
    while (end - at >= byte_block::size) {
        const char* const stop =
            at + std::min<std::ptrdiff_t>(end - at, 255 * byte_block::size) / byte_block::size * byte_block::size;
        __m128i counts = _mm_setzero_si128();
        for (; at != stop; at += byte_block::size) counts = byte_block(at).count('\n', counts);
        const __m128i sums = _mm_sad_epu8(counts, _mm_setzero_si128());
        lines += static_cast<std::size_t>(_mm_cvtsi128_si32(sums) + _mm_extract_epi16(sums, 4));
    }
#endif
    return lines + static_cast<std::size_t>(std::count(at, end, '\n'));
}

// The first byte that is not white space. A text has no CR left in it.
inline const char* skip_space(const char* at)
{
    while (*at == ' ' || *at == '\n' || *at == '\t') ++at;
    return at;
}

}  // namespace NUVEK_2_18::parser
