#include "data_mapper/item_writer.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <stdexcept>
#include <utility>

#include "data_mapper/item_block.h"

namespace data_mapper4 {

namespace {

// A table of this many items or fewer has no index.
constexpr std::size_t small_table = 8;

constexpr std::size_t least_growth = 64;  // in bytes

char* write_size(char* to, std::size_t size)
{
    for (; size >= item_record::size_limit; size >>= item_record::size_bits)
        *to++ = static_cast<char>(size | item_record::size_limit);
    *to++ = static_cast<char>(size);
    return to;
}

std::size_t width_of(std::size_t size)
{
    std::size_t width = 1;
    for (; size >= item_record::size_limit; size >>= item_record::size_bits) ++width;
    return width;
}

}  // namespace

void item_writer::expect(std::size_t items, std::size_t bytes)
{
    const item_block& block = own(bytes + item_record::longest_size);
    m_expected = block.size + items;
    m_at = block.used;
    need(bytes + item_record::longest_size);
}

bool item_writer::begin(std::string_view key)
{
    const item_block& block = own(0);
    index_items();
    if (!find_place(key)) return false;
    m_at = block.used;
    m_empty = 0;
    put_text(key.size(), key);
    need(1);
    m_values = m_at++;
    return true;
}

void item_writer::add(std::string_view value)
{
    if (value.empty()) {
        add_empty(1);
        return;
    }
    put_empty();
    put_text(value.size() + item_record::text_code, value);
}

void item_writer::add_key()
{
    put_empty();
    put_text(item_record::key_code, "");
}

void item_writer::end_row()
{
    put_empty();
    put_text(item_record::row_end_code, "");
}

bool item_writer::end()
{
    put_empty();
    const std::size_t size = m_at - m_values - 1;
    const std::size_t width = width_of(size);
    need(width - 1);
    item_block& block = *m_store.m_block;
    char* const values = block.bytes() + m_values;
    if (width != 1) std::memmove(values + width, values + 1, size);
    write_size(values, size);
    if (block.index != nullptr && !block.index->add(m_place, block.used)) return false;
    block.used = m_values + width + size;
    ++block.size;
    return true;
}

// Only if clearly more is unused than growth leaves: small loads into a large table must not copy it each time.
void item_writer::trim()
{
    const item_block* const block = m_store.m_block;
    if (block == nullptr || !block->has_one_holder()) return;
    if (block->capacity / 2 > block->used + least_growth) resize(block->used);
}

// Returns the block, for changes: if others share it, it is copied first, with room for more bytes.
item_block& item_writer::own(std::size_t bytes)
{
    const item_block* const shared = m_store.m_block;
    if (shared != nullptr && shared->has_one_holder()) return *m_store.m_block;
    item_store copy;
    copy.m_block = item_block::make(bytes + (shared == nullptr ? 0 : shared->used));
    if (shared != nullptr) {
        item_block& block = *copy.m_block;
        std::memcpy(block.bytes(), shared->records().data(), shared->used);
        block.used = shared->used;
        block.size = shared->size;
        if (shared->index != nullptr) block.index = item_index::make(block.records(), block.size);
    }
    std::swap(m_store.m_block, copy.m_block);
    return *m_store.m_block;
}

// Moves the records, and what is written after them, to a block of that capacity.
void item_writer::resize(std::size_t capacity)
{
    item_block& old = *m_store.m_block;
    item_block* const block = item_block::make(capacity);
    std::memcpy(block->bytes(), old.bytes(), std::min(capacity, old.capacity));
    block->used = old.used;
    block->size = old.size;
    block->index = std::move(old.index);
    if (block->index != nullptr) block->index->move_to(block->bytes());
    m_store.m_block = block;
    item_block::destroy(&old);
}

void item_writer::index_items()
{
    item_block& block = *m_store.m_block;
    if (block.index == nullptr ? block.size < small_table : block.index->has_room_for(block.size + 1)) return;
    block.index = item_index::make(block.records(), std::max(block.size + 1, m_expected));
}

// Returns false if the key is taken.
bool item_writer::find_place(std::string_view key)
{
    item_block& block = *m_store.m_block;
    if (block.index == nullptr) return !m_store.find(key);
    m_place = block.index->place_of(key, block.bytes());
    if (m_place.record != item_index::nowhere) return false;
    if (block.index->is_too_far(m_place)) block.index->order(block.records());
    return true;
}

// Makes room for the next bytes. A block that outgrows what was expected grows by half each time.
void item_writer::grow(std::size_t bytes)
{
    const std::size_t capacity = m_store.m_block->capacity;
    if (bytes > item_index::most_bytes) throw std::length_error("an item of 1 TiB or more");
    if (m_at + bytes < m_at) throw std::bad_alloc();
    resize(std::max(m_at + bytes, capacity + capacity / 2 + least_growth));
}

void item_writer::need(std::size_t bytes)
{
    if (m_store.m_block->capacity - m_at < bytes) grow(bytes);
}

void item_writer::put_text(std::size_t code, std::string_view text)
{
    need(item_record::longest_size + text.size());
    char* const begin = m_store.m_block->bytes() + m_at;
    char* const text_begin = write_size(begin, code);
    std::memcpy(text_begin, text.data(), text.size());
    m_at += static_cast<std::size_t>(text_begin - begin) + text.size();
}

void item_writer::put_empty()
{
    if (m_empty == 0) return;
    if (m_empty == 1) {
        put_text(item_record::text_code, "");
    } else {
        put_text(item_record::empty_code, "");
        put_text(m_empty, "");
    }
    m_empty = 0;
}

}  // namespace data_mapper4
