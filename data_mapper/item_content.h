// Internal: the item grammar that the four kinds of map share.
//
//     content = (item arg*)*     a run of nodes in the parser's queue, whatever their nesting in the document
//     item    = <item name="KEY"/>
//     arg     = <arg name="VALUE"/>
//
// Which attributes may follow the name, how many args an item may have and what becomes of a faulty one differs from
// kind to kind, and stands in the kind's own file.
#pragma once

#include <cstddef>
#include <utility>

#include "data_mapper/map_error_t.h"
#include "platform/xml_stream_parser.h"

namespace data_mapper4 {

using NUVEK_2_18::parser::xml_stream_parser;

// What an element carries beside its name.
enum class element_form
{
    name_only,
    name_and_attributes,
};

// Whether a node waits and is an item, or an arg.
bool is_item_waiting(xml_stream_parser& parser);
bool is_arg_waiting(xml_stream_parser& parser);

// The first attribute is "name", the others are as the form allows, and there is no text.
bool has_form(const xml_stream_parser::node& element, element_form form);

// The value of the "name" of an element that has either form.
ustring8& name_of(xml_stream_parser::node& element);

// Checks an item just taken: its form, its name, and that something follows an item that has nothing but its name, even
// if only the end tag of its map. no_error or invalid_format.
map_error_t::result_type check_item(xml_stream_parser::node& item, element_form form, xml_stream_parser& parser);

// Takes the item that waits. True when it is sound and its name new to the items; `position` is then where it belongs
// among them. False: error has the fault's code. The error's line becomes the item's either way.
template <class items>
bool take_item(xml_stream_parser& parser, element_form form, items& known, xml_stream_parser::node& item,
               typename items::iterator& position, map_error_t& error)
{
    item = parser.node_queue_pop();
    error.line(item.line);
    const map_error_t::result_type code = check_item(item, form, parser);
    if (code != map_error_t::no_error) {
        error.type(code);
        return false;
    }
    position = known.lower_bound(name_of(item));
    const bool is_new = position == known.end() || position->first != name_of(item);
    if (!is_new) error.type(map_error_t::duplicate_item);
    return is_new;
}

// Adds what a taken item stands for. False: it was not added, and error has the code.
template <class items, class content>
bool add_item(items& known, typename items::iterator position, xml_stream_parser::node& item, content&& value,
              map_error_t& error)
{
    const std::size_t size = known.size();
    known.emplace_hint(position, std::move(name_of(item)), std::forward<content>(value));
    if (known.size() != size) return true;
    error.type(map_error_t::memory_error);
    return false;
}

}  // namespace data_mapper4
