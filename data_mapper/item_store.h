// item_store: the items of a table in one block of memory, which copies of the store share until one of them changes.
// An item is a key and a list of values, which may be in rows. A new store is empty and owns no memory.
//
// Internal. The header is installed because the tables contain a store; hosts use the tables' own members.
//
// Threads: several threads may copy a store and call const members on it at once; anything else must not overlap with
// another use of the same store. Two stores never disturb each other, whether or not they share a block.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/ustring.h"

namespace data_mapper4 {

using NUVEK_2_18::strings::ustring8;

struct item_block;

// How items are written. A record is the size of the key, the key, the size of the values, and the values. Each value
// is a code, or its size plus text_code, followed by its bytes. Sizes and codes are written seven bits to a byte, the
// lowest bits first; all bytes but the last have their highest bit set.
struct item_record
{
    static constexpr std::size_t row_end_code = 0;
    static constexpr std::size_t empty_code = 1;  // several empty values; their number follows
    static constexpr std::size_t key_code = 2;    // the value is the key
    static constexpr std::size_t text_code = 3;

    static constexpr unsigned size_bits = 7;
    static constexpr std::size_t size_limit = std::size_t{1} << size_bits;
    static constexpr std::size_t longest_size = (sizeof(std::size_t) * 8 + size_bits - 1) / size_bits;

    static std::size_t take_size(const char*& at)
    {
        auto byte = static_cast<unsigned char>(*at++);
        std::size_t size = byte;
        for (unsigned shift = size_bits; byte >= size_limit; shift += size_bits) {
            byte = static_cast<unsigned char>(*at++);
            size += (std::size_t{byte} << shift) -
                    (std::size_t{1} << shift);  // the highest bit of the byte before is still in the size
        }
        return size;
    }

    static std::string_view take_text(const char*& at)
    {
        const std::size_t size = take_size(at);
        const std::string_view text(at, size);
        at += size;
        return text;
    }
};

// The values of an item, taken one after the other. They are valid until the store changes.
class item_values
{
public:
    item_values() = default;
    item_values(std::string_view key, const char* begin, const char* end) : m_key(key), m_at(begin), m_end(end) {}

    // Whether nothing is left, not even the end of a row.
    bool empty() const { return m_at == m_end && m_empty == 0; }

    // Takes the next value and returns true. Returns false and leaves `value` unchanged at the end of a row, which it
    // takes as well, and at the end of the item.
    bool take(std::string_view& value)
    {
        if (m_empty == 0) {
            if (m_at == m_end) return false;
            const std::size_t code = item_record::take_size(m_at);
            if (code >= item_record::text_code) {
                value = {m_at, code - item_record::text_code};
                m_at += value.size();
                return true;
            }
            if (code == item_record::row_end_code) return false;
            if (code == item_record::key_code) {
                value = m_key;
                return true;
            }
            m_empty = item_record::take_size(m_at);
        }
        --m_empty;
        value = {};
        return true;
    }

    // What is left once all values have been taken.
    item_values end() const { return {m_key, m_end, m_end}; }

    // Whether both are at the same place of one item.
    bool operator==(const item_values& other) const { return m_at == other.m_at && m_empty == other.m_empty; }

    // Copy one value, by its number counted from 0, or an empty text if there is none; the values of the next row; the
    // values of all rows that are left.
    void copy_to(ustring8& text, std::size_t number = 0) const
    {
        item_values left = *this;
        std::string_view value;
        while (left.take(value) && number-- != 0) value = {};
        text.assign(value);
    }
    void copy_to(std::vector<ustring8>& texts) const;
    void copy_to(std::vector<std::vector<ustring8>>& rows) const;

private:
    void take_row(std::vector<ustring8>& texts);

    std::string_view m_key;
    const char* m_at = nullptr;
    const char* m_end = nullptr;
    std::size_t m_empty = 0;  // empty values before the one at m_at
};

// An item, or none. Valid until the store changes.
class stored_item
{
public:
    stored_item() = default;
    explicit stored_item(const char* record) : m_record(record) {}

    explicit operator bool() const { return m_record != nullptr; }
    std::string_view key() const
    {
        const char* at = m_record;
        return item_record::take_text(at);
    }

    item_values values() const
    {
        const char* at = m_record;
        const std::string_view key = item_record::take_text(at);
        const std::string_view values = item_record::take_text(at);
        return {key, values.data(), values.data() + values.size()};
    }

    // The end of the item's record, where the next one begins.
    const char* end() const
    {
        const char* at = m_record;
        item_record::take_text(at);
        item_record::take_text(at);
        return at;
    }

private:
    const char* m_record = nullptr;
};

class item_store
{
public:
    item_store() = default;
    item_store(const item_store& other) noexcept;
    item_store(item_store&& other) noexcept;
    item_store& operator=(item_store other) noexcept;
    ~item_store();

    std::size_t size() const;

    // Returns the item with that key, or none. Constant time; logarithmic if keys were made to collide.
    stored_item find(std::string_view key) const;

    // Calls use(item) for all items, in the order in which they were added.
    template <class function>
    void for_each(function use) const
    {
        const std::string_view records = this->records();
        const char* const end = records.data() + records.size();
        for (const char* at = records.data(); at != end;) {
            const stored_item item(at);
            use(item);
            at = item.end();
        }
    }

    // Returns all items in the order of their keys.
    std::vector<stored_item> sorted() const;

    // The items' records, in the same order.
    std::string_view records() const;

    bool is_shared_with(const item_store& other) const { return m_block == other.m_block; }

private:
    friend class item_writer;

    item_block* m_block = nullptr;
};

}  // namespace data_mapper4
