// Internal: adds the items of a map to a table, a batch at a time.
//
// Adding a single item means a search from the root of the table, through memory that is no longer in any cache. If the
// items of a batch are added in the order of their keys, neighbours in the table are also neighbours in memory. The
// shuffled rows of the `load` benchmark justify it.
#pragma once

#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

#include "data_mapper/copy_on_write.h"
#include "data_mapper/item_reader.h"

namespace data_mapper4 {

// Returns the place of the key in the table: the first item that is not less. It must not be before the hint.
template <class items>
typename items::iterator place_of(items& known, typename items::iterator hint, std::string_view key)
{
    // If the table is only a few times as large as the batch, the place is a few steps away.
    constexpr int few_steps = 5;
    for (int step = 0; step < few_steps; ++step, ++hint) {
        if (hint == known.end() || std::string_view(hint->first) >= key) return hint;
    }
    return known.lower_bound(ustring8(key));
}

// Returns the places of a batch's items in the table, in the order of their keys. Sets `end` to the first item, in
// document order, whose key is not new, because the table or an earlier item of the batch has it; to the number of
// items if all keys are new.
template <class items>
std::vector<typename items::iterator> places_of(const item_batch& batch, items& known, std::size_t& end)
{
    std::vector<typename items::iterator> places;
    places.reserve(batch.items.size());
    end = batch.items.size();
    const gathered_item* last_kept = nullptr;
    auto place = known.lower_bound(ustring8(batch.items[batch.sorted.front().item].key));
    for (const item_batch::sorted_item& each : batch.sorted) {
        const gathered_item& item = batch.items[each.item];
        place = place_of(known, place, item.key);
        places.push_back(place);
        const bool is_known =
            (place != known.end() && place->first == item.key) || (last_kept != nullptr && last_kept->key == item.key);
        if (is_known && each.item < end) end = each.item;
        if (item.is_kept) last_kept = &item;
    }
    return places;
}

// Adds the items that the reader reads to the table, up to the first fault. make(values, size) returns what the table
// stores for an item's values. Returns the load's result.
template <class items, class maker>
map_error_t load_items(item_reader& reader, copy_on_write<items>& table, maker make)
{
    while (reader.gather()) {
        const item_batch& batch = reader.batch();
        items& known = table.write();
        std::size_t end = 0;
        const auto places = places_of(batch, known, end);
        if (end != batch.items.size()) reader.end_at_duplicate(batch.items[end]);
        for (std::size_t i = 0; i < places.size(); ++i) {
            const std::size_t number = batch.sorted[i].item;
            const gathered_item& item = batch.items[number];
            if (number >= end || !item.is_kept) continue;
            const std::size_t size = known.size();
            known.emplace_hint(places[i], ustring8(item.key),
                               make(batch.values.data() + item.first_value, batch.value_count(number)));
            if (known.size() != size) continue;
            reader.end(map_error_t::memory_error);
            return reader.result();
        }
    }
    return reader.result();
}

}  // namespace data_mapper4
