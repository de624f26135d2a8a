// Internal: many items added at once, in the order of their names.
//
// An item that is added alone is searched for from the root of the table, through memory that no cache holds any more.
// Items in no order are therefore first gathered where they stand in the text, sorted by name, and then added one
// beside the other, which also lays them side by side in memory. The benchmark's shuffled rows pay for it.
//
// What can be observed is that each item was added when its turn came: where a batch meets a fault, a name that is
// there already or a shortage of memory, it is taken back and its items are left to be added one by one.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <exception>
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

// An item that is gathered: its name, and where its values stand among those of the batch.
struct gathered_item
{
    std::string_view key;
    std::uint64_t order;  // some of the key's bytes as a number, for sorting
    std::uint32_t first_value;
    std::uint32_t values;
};

// Sorts by key.
void sort_by_key(std::vector<gathered_item>& items);

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
        return !m_known.empty() && m_outcome.is_sound() && m_queue.can_mark() && m_reader.can_repeat();
    }

    // Adds a batch, and gives 0; or adds nothing, and gives the number of items that must be added one by one instead.
    // If there is a failure, it must be thrown behind them.
    std::size_t load()
    {
        const xml_element_queue::mark begin = m_queue.front_mark();
        const load_outcome outcome_before = m_outcome;
        m_gathered.clear();
        m_values.clear();
        m_added.clear();
        try {
            gather();
            if (!m_gathered.empty() && add()) return 0;
        } catch (...) {
            m_failure = std::current_exception();
        }
        take_back();
        m_queue.go_to(begin);
        m_outcome = outcome_before;
        return m_gathered.size() + (m_failure == nullptr ? 1 : 0);
    }

    void throw_failure() const
    {
        if (m_failure != nullptr) std::rethrow_exception(m_failure);
    }

private:
    // A batch may hold as many items and values together as this, or as a part of what the table held before, so that
    // its memory stays small beside the table's.
    static constexpr std::size_t smallest_batch = 4096;
    static constexpr std::size_t part_of_table = 5;

    // Gathers items up to the first one that is not as plain as can be, and leaves that one in front.
    void gather()
    {
        const std::size_t most = std::max(smallest_batch, m_weight / part_of_table);
        m_gathered.reserve(smallest_batch / 16);
        m_values.reserve(smallest_batch / 8);
        while (m_gathered.size() + m_values.size() < most && is_item_waiting(m_queue) && gather_item()) {
        }
        m_weight += m_gathered.size() + m_values.size();
    }

    // False when the item in front is not as plain as can be; it is then left there.
    bool gather_item()
    {
        const xml_element& item = m_queue.front();
        if (item.form != xml_element::kind::whole || !is_sound_item(m_queue, group_reader::form)) return false;
        if (!name_of(item).is_plain) return false;
        const xml_element_queue::mark here = m_queue.front_mark();
        const std::string_view key = name_of(item).written;
        const std::size_t first_value = m_values.size();
        load_outcome outcome = m_outcome;
        outcome.stand_at(item);
        const bool is_plain = m_reader.take(m_queue, m_values, outcome) == group::add && outcome.is_sound();
        if (!is_plain || m_values.size() > std::numeric_limits<std::uint32_t>::max()) {
            m_queue.go_to(here);
            m_values.resize(first_value);
            return false;
        }
        m_outcome = outcome;
        m_gathered.push_back({key, 0, static_cast<std::uint32_t>(first_value),
                              static_cast<std::uint32_t>(m_values.size() - first_value)});
        return true;
    }

    // False when a key is there already.
    bool add()
    {
        sort_by_key(m_gathered);
        m_added.reserve(m_gathered.size());
        auto position = m_known.end();
        for (const gathered_item& item : m_gathered) {
            ustring8 key(item.key);
            position = m_added.empty() ? m_known.lower_bound(key) : next_position(position, key);
            const bool repeats = !m_added.empty() && m_added.back()->first == key;
            if (repeats || (position != m_known.end() && position->first == key)) return false;
            const xml_value* const values = m_values.data() + item.first_value;
            m_added.push_back(m_known.emplace_hint(position, std::move(key), m_reader.make(values, item.values)));
        }
        return true;
    }

    // Where the key belongs, which is not before the position.
    typename items::iterator next_position(typename items::iterator position, const ustring8& key)
    {
        // In a table a few times as large as the batch the place is a few steps away.
        for (std::size_t step = 0; step < part_of_table; ++step, ++position) {
            if (position == m_known.end() || !(position->first < key)) return position;
        }
        return m_known.lower_bound(key);
    }

    void take_back()
    {
        for (const auto added : m_added) m_known.erase(added);
    }

    group_reader& m_reader;
    xml_element_queue& m_queue;
    items& m_known;
    load_outcome& m_outcome;
    std::vector<gathered_item> m_gathered;
    std::vector<xml_value> m_values;
    std::vector<typename items::iterator> m_added;  // of those gathered, by name
    std::size_t m_weight = 0;                       // items and values of all batches
    std::exception_ptr m_failure;
};

}  // namespace data_mapper4
