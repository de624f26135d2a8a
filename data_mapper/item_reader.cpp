#include "data_mapper/item_reader.h"

#include <algorithm>
#include <cstring>

#include "platform/parser_elements.h"

namespace data_mapper4 {

namespace {

// The size at which a batch ends. Items already in the order of their keys need no sorting, and a small batch of them
// stays in the processor's nearest cache. Other batches grow up to a fixed size or a part of what was gathered before,
// so that a batch takes little memory compared to the table.
constexpr std::size_t batch_in_order = 256;
constexpr std::size_t smallest_batch = 4096;
constexpr std::size_t part_of_table = 4;

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

item_reader::item_reader(map_type type, xml_stream_parser& parser, attrib_schema& schema, map_error_t& error)
    : m_kind(*find_kind(type)), m_queue(elements_of(parser)), m_schema(schema), m_error(error)
{
    m_error.type(map_error_t::no_error);
}

bool item_reader::gather()
{
    const std::size_t most = std::max(smallest_batch, m_gathered / part_of_table);
    m_batch.clear();
    while (!m_is_over && m_batch.size() < (m_batch.is_in_order ? batch_in_order : most)) read_item();
    m_batch.sort();
    m_gathered += m_batch.size();
    return !m_batch.items.empty();
}

void item_reader::end_at_duplicate(const gathered_item& item)
{
    m_queue.go_back(item.position);
    note_line();
    end(map_error_t::duplicate_item);
    m_queue.pop();
    // Forget the names that elements after the item have added.
    m_schema.resize(item.schema_size);
}

map_error_t item_reader::result()
{
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
    m_batch.add(name_of(item), m_queue.position(), m_schema.size());
    const bool is_kept = read_args();
    m_batch.items.back().is_kept = is_kept;
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
    m_batch.values.emplace_back();
    if (!is_waiting("arg")) return true;
    const xml_element& arg = m_queue.front();
    const bool is_sound = has_form(arg, item_form::name_only);
    if (is_sound) m_batch.values.back() = name_of(arg);
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
        if (is_sound) m_batch.values.push_back(name_of(arg));
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
    }
    return m_error.type() == map_error_t::no_error;
}

// Reads the front element's attributes as a row. The first sound row of a load also extends the schema.
bool item_reader::read_row()
{
    const xml_element& element = m_queue.front();
    if (!m_is_schema_read) {
        set_row_result(read_attrib_names(element, m_schema, false));
        m_is_schema_read = m_error.type() == map_error_t::no_error;
        if (!m_is_schema_read) return false;
    }
    set_row_result(read_attrib_values(element, m_schema, m_batch.values));
    return m_error.type() == map_error_t::no_error;
}

std::vector<ustring8> texts_of(const xml_value* values, std::size_t size)
{
    std::vector<ustring8> texts;
    texts.reserve(size);
    for (const xml_value* value = values; value != values + size; ++value) {
        if (value->is_plain) {
            texts.emplace_back(value->raw);
        } else {
            texts.push_back(value->normalized());
        }
    }
    return texts;
}

}  // namespace data_mapper4
