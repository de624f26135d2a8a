// Internal: the memory of a store, and how items are written in it.
//
// A record is the size of the key, the key, the size of the values, and the values. Each value begins with a code below,
// or with its size plus the last one, followed by its bytes. Sizes and codes are written seven bits to a byte, the lowest
// first; all bytes but the last have their highest bit set.
#pragma once

#include <atomic>
#include <cstddef>
#include <string_view>

#include "data_mapper/item_index.h"

namespace data_mapper4 {

constexpr std::size_t row_end_code = 0;
constexpr std::size_t empty_code = 1;  // the number of empty values follows
constexpr std::size_t key_code = 2;    // the value is the key
constexpr std::size_t text_code = 3;

constexpr unsigned size_bits = 7;
constexpr std::size_t size_limit = std::size_t{1} << size_bits;
constexpr std::size_t longest_size = (sizeof(std::size_t) * 8 + size_bits - 1) / size_bits;

inline std::size_t take_size(const char*& at)
{
    auto byte = static_cast<unsigned char>(*at++);
    std::size_t size = byte;
    for (unsigned shift = size_bits; byte >= size_limit; shift += size_bits) {
        byte = static_cast<unsigned char>(*at++);
        size += (std::size_t{byte} - 1) << shift;  // the highest bit of the byte before is still in the size
    }
    return size;
}

inline std::string_view take_text(const char*& at)
{
    const std::size_t size = take_size(at);
    const std::string_view text(at, size);
    at += size;
    return text;
}

// The records follow the block in memory.
struct item_block
{
    std::atomic<std::size_t> holders{1};
    std::size_t size = 0;       // the number of items
    std::size_t used = 0;       // the bytes of their records
    std::size_t capacity = 0;   // in bytes
    item_index::pointer index;  // null if there are few items

    // Throws std::length_error for a table of 1 TiB or more.
    static item_block* make(std::size_t capacity);
    static void destroy(item_block* block) noexcept;

    // Whether only one store has this block. Makes visible what former holders did before they released it.
    bool has_one_holder() const { return holders.load(std::memory_order_acquire) == 1; }

    char* bytes() { return reinterpret_cast<char*>(this + 1); }
    std::string_view records() const { return {reinterpret_cast<const char*>(this + 1), used}; }
};

}  // namespace data_mapper4
