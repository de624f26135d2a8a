// Internal: the item grammar that the four kinds of map share.
//
//     content = (item arg*)*     a run of elements in the parser's queue, whatever their nesting in the document
//     item    = <item name="KEY"/>
//     arg     = <arg name="VALUE"/>
//
// Which attributes may follow the name, how many args an item may have and what becomes of a faulty one differs from
// kind to kind, and stands in the kind's own file.
#pragma once

#include <cstddef>
#include <cstring>
#include <string_view>
#include <vector>

#include "data_mapper/map_error_t.h"
#include "platform/xml_element_queue.h"
#include "platform/xml_stream_parser.h"

namespace data_mapper4 {

using NUVEK_2_18::parser::xml_attribute;
using NUVEK_2_18::parser::xml_element;
using NUVEK_2_18::parser::xml_element_queue;
using NUVEK_2_18::parser::xml_stream_parser;
using NUVEK_2_18::parser::xml_value;

// What an element carries beside its name.
enum class element_form
{
    name_only,
    name_and_attributes,
};

// A keyword of the grammar; its comparison is inlined.
template <std::size_t size>
bool is_keyword(std::string_view name, const char (&keyword)[size])
{
    return name.size() == size - 1 && std::memcmp(name.data(), keyword, size - 1) == 0;
}

// Whether an element waits and is an item, or an arg.
inline bool is_item_waiting(xml_element_queue& queue)
{
    return !queue.empty() && is_keyword(queue.front().tag, "item");
}
inline bool is_arg_waiting(xml_element_queue& queue)
{
    return !queue.empty() && is_keyword(queue.front().tag, "arg");
}

// The first attribute is "name", the others are as the form allows, and there is no text.
inline bool has_form(const xml_element& element, element_form form)
{
    const auto& attributes = element.attributes;
    if (attributes.empty() || !is_keyword(attributes.front().name, "name")) return false;
    if (form == element_form::name_only && attributes.size() != 1) return false;
    return !element.has_data;
}

// The value of the "name" of an element that has either form.
inline const xml_value& name_of(const xml_element& element)
{
    return element.attributes.front().value;
}

// The values as texts of their own.
std::vector<ustring8> texts_of(const xml_value* values, std::size_t size);

// Whether the item in front is sound: its form, its name, and that something follows an item that has nothing but its
// name, even if only the end tag of its map.
bool is_sound_item(xml_element_queue& queue, element_form form);

// The outcome of a load that goes on. Its line is that of an element, and counted only where the load ends.
class load_outcome
{
public:
    explicit load_outcome(const map_error_t& before) : m_error(before) { m_error.type(map_error_t::no_error); }

    bool is_sound() const { return m_error.type() == map_error_t::no_error; }
    void type(map_error_t::result_type type) { m_error.type(type); }

    // The line becomes that of the element.
    void stand_at(const xml_element& element)
    {
        m_begin = element.line == 0 ? element.begin : nullptr;
        if (element.line != 0) m_error.line(element.line);
    }

    // Code and line become those of the result.
    void set(const map_error_t& result)
    {
        m_error = result;
        m_begin = nullptr;
    }

    map_error_t in_lines_of(xml_element_queue& queue) const
    {
        map_error_t error = m_error;
        if (m_begin != nullptr) error.line(queue.line_of(m_begin));
        return error;
    }

private:
    map_error_t m_error;
    const char* m_begin = nullptr;  // of the element that gives the line, if one does
};

}  // namespace data_mapper4
