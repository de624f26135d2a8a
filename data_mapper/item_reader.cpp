#include "data_mapper/item_reader.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

#include "platform/parser_elements.h"

namespace data_mapper4 {

namespace {

// Compilers inline this comparison, but not that of two views.
template <std::size_t size>
bool is_keyword(std::string_view name, const char (&keyword)[size])
{
    return name.size() == size - 1 && std::memcmp(name.data(), keyword, size - 1) == 0;
}

const xml_value& name_of(const xml_element& element)
{
    return element.attributes.front().value;
}

// Whether the first attribute is "name", the others are as the form allows, and there is no text.
bool has_form(const xml_element& element, item_form form)
{
    const auto& attributes = element.attributes;
    if (attributes.empty() || !is_keyword(attributes.front().name, "name")) return false;
    if (form == item_form::name_only && attributes.size() != 1) return false;
    return !element.has_data();
}

}  // namespace

item_reader::item_reader(map_type type, xml_stream_parser& parser, std::vector<ustring8>& names, map_error_t& error,
                         item_store& items, key_test is_taken)
    : m_kind(*find_kind(type)),
      m_queue(elements_of(parser)),
      m_schema(names),
      m_error(error),
      m_items(items),
      m_is_taken(std::move(is_taken)),
      m_begin(m_queue.position()),
      m_known_end(m_begin)
{
    m_error.type(map_error_t::no_error);
}

map_error_t item_reader::load()
{
    while (!m_is_over) read_item();
    m_items.trim();
    if (m_has_line) m_error.line(m_queue.line_of(m_line_position));
    return m_error;
}

template <std::size_t size>
bool item_reader::is_waiting(const char (&tag)[size])
{
    return !m_queue.empty() && is_keyword(m_queue.front().tag, tag);
}

// Makes the front element's line the line of the result.
void item_reader::note_line()
{
    m_has_line = true;
    m_line_position = m_queue.position();
}

// Takes over both the code and the line.
void item_reader::set_row_result(const map_error_t& result)
{
    m_has_line = false;
    m_error = result;
}

void item_reader::end(map_error_t::result_type type)
{
    m_error.type(type);
    m_is_over = true;
}

// item = <item name="KEY"/>      KEY is not empty and new to the map
//
// A faulty item ends the load. So does an element that is not an item, but that is not a fault.
void item_reader::read_item()
{
    if (m_kind.line == line_rule::next && !m_queue.empty()) note_line();
    m_is_over = !is_waiting("item");
    if (m_is_over) return;
    note_line();
    const xml_element& item = m_queue.front();
    const bool is_sound = has_form(item, m_kind.item) && !name_of(item).empty() &&
                          (m_kind.item == item_form::name_and_attributes || !m_queue.is_last());
    if (!is_sound) {
        end(map_error_t::invalid_format);
        m_queue.pop();
        return;
    }
    if (!begin_item(name_of(item))) {
        end(map_error_t::duplicate_item);
        m_queue.pop();
        return;
    }
    if (read_args() && !m_items.end()) end(map_error_t::memory_error);
}

// Returns false if the key is taken.
bool item_reader::begin_item(const xml_value& name)
{
    look_ahead();
    const ustring8 normalized = name.is_plain ? ustring8() : name.normalized();
    const std::string_view key = name.is_plain ? name.raw : normalized;
    return m_items.begin(key) && !(m_is_taken && m_is_taken(key));
}

// Makes room for the next items, so that the table need not grow as it is filled. Limited to a multiple of what has been
// read, so that the room is linear in that even if the items then turn out to be faulty.
void item_reader::look_ahead()
{
    constexpr std::size_t least = 64;
    constexpr std::size_t multiple = 32;
    if (m_queue.position() < m_known_end) return;
    const std::size_t read = std::min(m_queue.position() - m_begin, std::numeric_limits<std::size_t>::max() / multiple);
    const auto run = m_queue.measure("item", std::max(least, read * multiple));
    m_known_end = run.end;
    // Sizes of less than 16 KiB take at most two bytes.
    m_items.expect(run.named, run.value_bytes + 2 * (run.elements + run.attributes));
}

// Takes the front item and its args. Returns false if the item is not kept.
bool item_reader::read_args()
{
    if (m_kind.args == arg_form::none) {
        const bool is_sound = read_row();
        m_is_over = !is_sound;
        m_queue.pop();
        return is_sound;
    }
    m_queue.pop();
    switch (m_kind.args) {
        case arg_form::text:
            return read_text();
        case arg_form::texts:
            return read_texts();
        default:
            return read_rows();
    }
}

// arg?      arg = <arg name="TEXT"/>, where TEXT may be empty; without an arg the text is empty
bool item_reader::read_text()
{
    if (!is_waiting("arg")) {
        m_items.add_empty(1);
        return true;
    }
    const xml_element& arg = m_queue.front();
    const bool is_sound = has_form(arg, item_form::name_only);
    if (is_sound) write_value(name_of(arg), m_items);
    if (!is_sound) end(map_error_t::invalid_format);
    m_queue.pop();
    return is_sound;
}

// arg*      arg = <arg name="TEXT"/>, where TEXT is not empty
bool item_reader::read_texts()
{
    for (bool is_sound = true; is_sound && is_waiting("arg"); m_queue.pop()) {
        note_line();
        const xml_element& arg = m_queue.front();
        is_sound = has_form(arg, item_form::name_only) && !name_of(arg).empty();
        if (is_sound) write_value(name_of(arg), m_items);
        if (!is_sound) m_error.type(map_error_t::invalid_format);
    }
    return true;
}

// arg*      arg = <arg name="SET" .../>, where SET is not empty; its attributes are a row
bool item_reader::read_rows()
{
    for (bool is_sound = true; is_sound && is_waiting("arg"); m_queue.pop()) {
        note_line();
        const xml_element& arg = m_queue.front();
        is_sound = has_form(arg, item_form::name_and_attributes) && !name_of(arg).empty();
        if (!is_sound) m_error.type(map_error_t::invalid_format);
        is_sound = is_sound && read_row();
        if (is_sound) m_items.end_row();
    }
    return m_error.type() == map_error_t::no_error;
}

// Reads the front element's attributes as a row. The first sound row of a load also extends the schema.
bool item_reader::read_row()
{
    const xml_element& element = m_queue.front();
    if (!m_is_schema_read) {
        set_row_result(m_schema.read_names(element));
        m_is_schema_read = m_error.type() == map_error_t::no_error;
        if (!m_is_schema_read) return false;
    }
    set_row_result(m_schema.read_row(element));
    if (m_error.type() != map_error_t::no_error) return false;
    m_schema.write_row(element, m_kind.item == item_form::name_and_attributes, m_items);
    return true;
}

}  // namespace data_mapper4
