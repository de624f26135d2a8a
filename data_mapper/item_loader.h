// Internal: the walk over a map's items that the four kinds of map share.
//
// A kind of map brings a group reader: what belongs to one item, read off the queue.
//
//     using items                      the container that the table holds
//     static constexpr form            what an item may carry
//     static constexpr ends_at_line    whether the element that ends the content gives the line
//     bool can_repeat() const          whether a group that is read again comes to the same
//     group take(queue, values, outcome)
//                                      takes the item in front, whose form and name are sound, and what belongs to it;
//                                      appends the values
//     mapped_type make(values, size)   what the values of a group stand for
#pragma once

#include <string_view>
#include <utility>
#include <vector>

#include "data_mapper/item_batch.h"
#include "data_mapper/item_content.h"

namespace data_mapper4 {

// Whether the item in front belongs behind all that are known, as each one does where a file is in order.
template <class items>
bool is_behind_all(const items& known, const xml_element& item)
{
    if (!has_form(item, element_form::name_and_attributes) || !name_of(item).is_plain) return false;
    return known.empty() || std::string_view(known.rbegin()->first) < name_of(item).written;
}

// Takes and adds the item in front. False: the load ends; the outcome has the code.
template <class group_reader>
bool load_item(group_reader& reader, xml_element_queue& queue, typename group_reader::items& known, bool is_behind,
               std::vector<xml_value>& values, load_outcome& outcome)
{
    outcome.stand_at(queue.front());
    const auto refuse = [&](map_error_t::result_type code) {
        outcome.type(code);
        queue.pop();
        return false;
    };
    if (!is_sound_item(queue, group_reader::form)) return refuse(map_error_t::invalid_format);
    ustring8 name = name_of(queue.front()).text();
    const auto position = is_behind ? known.end() : known.lower_bound(name);
    if (position != known.end() && position->first == name) return refuse(map_error_t::duplicate_item);
    values.clear();
    const group taken = reader.take(queue, values, outcome);
    if (taken != group::add) return taken == group::drop;
    const std::size_t size = known.size();
    known.emplace_hint(position, std::move(name), reader.make(values.data(), values.size()));
    if (known.size() == size) outcome.type(map_error_t::memory_error);
    return known.size() != size;
}

// Takes and adds items until the content ends or a fault does.
template <class group_reader, class shared_items>
void load_items(group_reader& reader, xml_element_queue& queue, shared_items& table, load_outcome& outcome)
{
    if (group_reader::ends_at_line && !queue.empty()) outcome.stand_at(queue.front());
    if (!is_item_waiting(queue)) return;
    auto& known = table.write();
    item_batch<group_reader> batch(reader, queue, known, outcome);
    std::vector<xml_value> values;
    std::size_t one_by_one = 0;  // items that must be added in their own order
    while (is_item_waiting(queue)) {
        const bool is_behind = is_behind_all(known, queue.front());
        if (!is_behind && one_by_one == 0 && batch.is_worthwhile()) {
            one_by_one = batch.load();
            if (one_by_one == 0) batch.throw_failure();
        } else {
            if (!load_item(reader, queue, known, is_behind, values, outcome)) return;
            if (one_by_one != 0 && --one_by_one == 0) batch.throw_failure();
        }
        if (group_reader::ends_at_line && !queue.empty()) outcome.stand_at(queue.front());
    }
}

// The load of a table of any kind, given the table's members.
template <class group_reader, class shared_items>
map_error_t load_table(group_reader reader, const ustring8& map_name, xml_stream_parser& parser, ustring8& id,
                       map_error_t& error, shared_items& table)
{
    id = map_name;
    error.type(map_error_t::no_error);
    xml_element_queue& queue = xml_element_queue::of(parser);
    load_outcome outcome(error);
    load_items(reader, queue, table, outcome);
    error = outcome.in_lines_of(queue);
    return error;
}

}  // namespace data_mapper4
