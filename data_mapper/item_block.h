// Internal: the memory of a store.
#pragma once

#include <atomic>
#include <cstddef>
#include <string_view>

#include "data_mapper/item_index.h"

namespace data_mapper4 {

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

    char* bytes() { return static_cast<char*>(static_cast<void*>(this + 1)); }
    std::string_view records() const { return {static_cast<const char*>(static_cast<const void*>(this + 1)), used}; }
};

}  // namespace data_mapper4
