// Internal: many items added at once, in the order of their names.
//
// An item that is added alone is searched for in the whole table, from its root, through memory that no cache holds any
// more. Items in no order are therefore first looked through where they stand in the text, their places sorted by name,
// and then added one beside the other, which also lays them side by side in memory. The benchmark's shuffled rows pay
// for it.
//
// What can be observed is that each item was added when its turn came: where a batch meets a fault, a name that is
// there already or a shortage of memory, it is taken back and its items are left to be added one by one.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>
#include <vector>

#include "data_mapper/item_content.h"

namespace data_mapper4 {

// What is to be done with an item and what belongs to it.
enum class group
{
    add,
    drop,  // leave it out, and go on
    end,   // leave it out, and end the load
};

// Where an item stands in the text.
struct item_place
{
    const char* begin;
    std::uint32_t key_offset;
    std::uint32_t key_size;
    std::uint64_t order;  // the first bytes by which the keys of a batch may differ, as a number

    std::string_view key() const { return {begin + key_offset, key_size}; }
};

// Sorts by key.
void sort_places(std::vector<item_place>& places);

template <class group_reader>
class item_batch
{
public:
    using items = typename group_reader::items;

    item_batch(group_reader& reader, xml_element_queue& queue, items& known, load_outcome& outcome)
        : m_reader(reader), m_queue(queue), m_known(known), m_outcome(outcome)
    {
    }

    // Whether the item in front, and presumably those behind it, should be added in a batch.
    bool is_worthwhile() const
    {
        return m_known.size() >= smallest_table && m_queue.can_mark() && m_reader.can_repeat();
    }

    // Adds a batch, and gives 0; or adds nothing, and gives the number of items that must be added one by one instead.
    std::size_t load()
    {
        const xml_element_queue::mark begin = m_queue.front_mark();
        const load_outcome outcome_before = m_outcome;
        bool is_added = false;
        m_added = 0;
        try {
            collect();
            const xml_element_queue::mark end = m_queue.front_mark();
            is_added = !m_places.empty() && add(begin.place.depth);
            if (is_added) m_queue.go_to(end);
        } catch (...) {
            // Whatever it is will come again when the items are added one by one.
            take_back();
        }
        const std::size_t looked_at = m_places.size() + 1;
        if (is_added) return 0;
        m_queue.go_to(begin);
        m_outcome = outcome_before;
        return looked_at;
    }

private:
    // In a smaller table the search is cheap.
    static constexpr std::size_t smallest_table = 1024;
    // A batch may be as large as this, or as half the table, so that its memory stays small beside the table's.
    static constexpr std::size_t smallest_batch = 2048;

    static bool is_plain(const xml_element& item)
    {
        constexpr auto most = std::numeric_limits<std::uint32_t>::max();
        if (!has_form(item, group_reader::form) || name_of(item).empty() || !name_of(item).is_plain) return false;
        const std::string_view key = name_of(item).written;
        return key.size() <= most && static_cast<std::size_t>(key.data() - item.begin) <= most;
    }

    // Looks through the items up to the first one that is not as plain as can be, and leaves that one in front.
    void collect()
    {
        m_places.clear();
        const std::size_t most = std::max(smallest_batch, m_known.size() / 2);
        while (m_places.size() < most && is_item_waiting(m_queue) && is_plain(m_queue.front())) {
            if (!is_sound_item(m_queue, group_reader::form)) break;
            const xml_element_queue::mark here = m_queue.front_mark();
            const std::string_view key = name_of(m_queue.front()).written;
            load_outcome outcome = m_outcome;
            outcome.stand_at(m_queue.front());
            if (m_reader.take(m_queue, outcome) != group::add || !outcome.is_sound()) {
                m_queue.go_to(here);
                break;
            }
            m_outcome = outcome;
            m_places.push_back({here.place.at, static_cast<std::uint32_t>(key.data() - here.place.at),
                                static_cast<std::uint32_t>(key.size()), 0});
        }
    }

    // False when a key is there already.
    bool add(std::size_t depth)
    {
        m_added = 0;
        sort_places(m_places);
        auto position = m_known.end();
        for (const item_place& place : m_places) {
            load_outcome outcome = m_outcome;
            m_queue.go_to({{place.begin, depth}, std::numeric_limits<std::size_t>::max()});
            m_queue.front();
            m_reader.take(m_queue, outcome);
            ustring8 key(place.key());
            position = m_added == 0 ? m_known.lower_bound(key) : next_position(position, key);
            const bool repeats = m_added != 0 && m_places[m_added - 1].key() == place.key();
            if (repeats || (position != m_known.end() && position->first == key)) {
                take_back();
                return false;
            }
            m_known.emplace_hint(position, std::move(key), m_reader.value());
            ++m_added;
        }
        return true;
    }

    // Where the key belongs, which is not before the position.
    typename items::iterator next_position(typename items::iterator position, const ustring8& key)
    {
        // In a table a few times as large as the batch the place is a few steps away.
        for (int step = 0; step < 4; ++step, ++position) {
            if (position == m_known.end() || !(position->first < key)) return position;
        }
        return m_known.lower_bound(key);
    }

    void take_back()
    {
        auto position = m_known.begin();
        for (std::size_t i = 0; i < m_added; ++i) {
            while (position->first != m_places[i].key()) ++position;
            position = m_known.erase(position);
        }
        m_added = 0;
    }

    group_reader& m_reader;
    xml_element_queue& m_queue;
    items& m_known;
    load_outcome& m_outcome;
    std::vector<item_place> m_places;
    std::size_t m_added = 0;  // how many of the places, in their order, are in the table
};

}  // namespace data_mapper4
