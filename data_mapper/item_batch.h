// Internal: items of a map, gathered as views into the document, to be added to a table in the order of their keys.
#pragma once

#include <cstddef>
#include <cstdint>
#include <forward_list>
#include <string_view>
#include <vector>

#include "data_mapper/map_error_t.h"
#include "platform/xml_element.h"

namespace data_mapper4 {

using NUVEK_2_18::parser::xml_value;

struct gathered_item
{
    std::string_view key;
    std::size_t position;     // in the queue
    std::size_t first_value;  // an index into the batch's values; they end where those of the next item begin
    std::size_t schema_size;  // the number of names in the schema before the item
    bool is_kept;             // false for an item that is faulty or dropped; its key must still be new to the table
};

struct item_batch
{
    struct sorted_item
    {
        std::uint64_t order;  // the order number of a part of the key
        std::size_t item;     // the item's index in the batch
    };

    std::vector<gathered_item> items;  // in the order of the document
    std::vector<xml_value> values;
    std::vector<sorted_item> sorted;              // items in the order of their keys, then of the document
    std::forward_list<ustring8> normalized_keys;  // those whose raw values are not plain
    std::size_t normalized_bytes = 0;             // the size of those keys
    bool is_in_order = true;                      // whether each key is greater than the one before it

    // The number of items and values; this many bytes of normalized keys count as one.
    static constexpr std::size_t key_bytes = 16;
    std::size_t size() const { return items.size() + values.size() + normalized_bytes / key_bytes; }

    std::size_t value_count(std::size_t item) const;
    void add(const xml_value& key, std::size_t position, std::size_t schema_size);
    void sort();
    void clear();
};

}  // namespace data_mapper4
