// Internal: adds items to a store, one at a time.
//
// An item is written after the last one, and is not part of the store until end(). If memory runs out before that, or
// another item is begun, the store is as it was before the item.
#pragma once

#include <cstddef>
#include <string_view>

#include "data_mapper/item_index.h"
#include "data_mapper/item_store.h"

namespace data_mapper4 {

class item_writer
{
public:
    explicit item_writer(item_store& store) : m_store(store) {}

    // Makes room for this many more items, whose records have this many bytes in all. Only a hint.
    void expect(std::size_t items, std::size_t bytes);

    // Begins an item. Returns false if the store has one with that key.
    bool begin(std::string_view key);

    // Add to the item: a value; empty values; a value that is the key; the end of a row.
    void add(std::string_view value);
    void add_empty(std::size_t count) { m_empty += count; }
    void add_key();
    void end_row();

    // Ends the item and adds it to the store. Returns false, and adds nothing, if the store has its key after all.
    bool end();

    // Gives memory back if more than half of it turned out not to be needed.
    void trim();

private:
    item_block& own(std::size_t bytes);
    void resize(std::size_t capacity);
    void index_items();
    bool find_place(std::string_view key);
    void grow(std::size_t bytes);
    void need(std::size_t bytes);
    void put_text(std::size_t code, std::string_view text);
    void put_empty();

    item_store& m_store;
    std::size_t m_expected = 0;  // the final number of items, if it is known
    item_index::place m_place = {};
    std::size_t m_values = 0;  // where the item's values begin, after a byte for their size
    std::size_t m_at = 0;      // where the next byte goes
    std::size_t m_empty = 0;   // empty values that are not written yet
};

}  // namespace data_mapper4
