#include "data_mapper/vector_map_t.h"

#include <utility>

#include "data_mapper/item_content.h"

namespace data_mapper4 {

namespace {

// args = arg*      arg = <arg name="TEXT"/>, TEXT not empty
// Ends behind the first faulty arg; the values are those before it. Every arg moves the line.
std::vector<ustring8> take_args(xml_stream_parser& parser, map_error_t& error)
{
    std::vector<ustring8> values;
    while (is_arg_waiting(parser)) {
        xml_stream_parser::node arg = parser.node_queue_pop();
        error.line(arg.line);
        if (!has_form(arg, element_form::name_only) || name_of(arg).empty()) {
            error.type(map_error_t::invalid_format);
            break;
        }
        values.push_back(std::move(name_of(arg)));
    }
    return values;
}

}  // namespace

vector_map_t::vector_map_t() = default;
vector_map_t::vector_map_t(const vector_map_t& other) = default;
vector_map_t::~vector_map_t() = default;
vector_map_t& vector_map_t::operator=(const vector_map_t& other) = default;

// A faulty arg leaves its code in m_error and the load goes on; only the faults of an item end it.
map_error_t vector_map_t::load(const ustring8& map_name, xml_stream_parser& parser)
{
    m_id = map_name;
    m_error.type(map_error_t::no_error);
    xml_stream_parser::node item;
    while (is_item_waiting(parser)) {
        items& known = m_items.write();
        items::iterator position;
        if (!take_item(parser, element_form::name_only, known, item, position, m_error)) break;
        if (!add_item(known, position, item, take_args(parser, m_error), m_error)) break;
    }
    return m_error;
}

void vector_map_t::clear()
{
    m_items.clear();
}

ustring8 vector_map_t::id()
{
    return m_id;
}

bool vector_map_t::has_item(const ustring8& item_name) const
{
    return m_items.read().count(item_name) != 0;
}

bool vector_map_t::get_args(const ustring8& item_name, std::vector<ustring8>& values) const
{
    const auto found = m_items.read().find(item_name);
    const bool is_found = found != m_items.read().end();
    // The name may be one of the values, so it is not touched before the search is done.
    if (is_found) {
        values = found->second;
    } else {
        values.clear();
    }
    return is_found;
}

vector_map_t::items::iterator vector_map_t::begin()
{
    return m_items.expose().begin();
}

vector_map_t::items::iterator vector_map_t::end()
{
    return m_items.expose().end();
}

bool vector_map_t::empty()
{
    return m_items.read().empty();
}

}  // namespace data_mapper4
