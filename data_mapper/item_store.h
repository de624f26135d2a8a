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

// The values of an item, taken one after the other. They are valid until the store changes.
class item_values
{
public:
    item_values() = default;
    item_values(std::string_view key, const char* begin, const char* end) : m_key(key), m_at(begin), m_end(end) {}

    // Whether nothing is left, not even the end of a row.
    bool empty() const { return m_at == m_end && m_empty == 0; }

    // Takes the next value. Returns false, and leaves it unchanged, at the end of a row, which it takes too, and at the
    // end of the item.
    bool take(std::string_view& value);

    // Copy the values: the one of that number, counted from 0 and empty if there is none; those of a row; all rows.
    void copy_to(ustring8& text, std::size_t number = 0) const;
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
    std::string_view key() const;
    item_values values() const;

    // The end of the item's record, where the next one begins.
    const char* end() const;

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

    bool is_shared_with(const item_store& other) const { return m_block == other.m_block; }

private:
    friend class item_writer;

    std::string_view records() const;

    item_block* m_block = nullptr;
};

}  // namespace data_mapper4
