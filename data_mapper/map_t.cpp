#include "data_mapper/map_t.h"

#include "data_mapper/item_content.h"

namespace data_mapper4 {

namespace {

// arg = <arg name="TEXT"/>     TEXT may be empty; no arg at all stands for the empty text
bool take_text(xml_stream_parser& parser, ustring8& text)
{
    text.clear();
    if (!is_arg_waiting(parser)) return true;
    xml_stream_parser::node arg = parser.node_queue_pop();
    if (!has_form(arg, element_form::name_only)) return false;
    text = std::move(name_of(arg));
    return true;
}

}  // namespace

map_t::map_t() = default;
map_t::map_t(const map_t& other) = default;
map_t::~map_t() = default;
map_t& map_t::operator=(const map_t& other) = default;

// A fault is reported at the item's line, also when it lies in the arg behind it.
map_error_t map_t::load(const ustring8& map_name, xml_stream_parser& parser)
{
    m_id = map_name;
    m_error.type(map_error_t::no_error);
    xml_stream_parser::node item;
    ustring8 text;
    while (is_item_waiting(parser)) {
        items& known = m_items.write();
        items::iterator position;
        if (!take_item(parser, element_form::name_only, known, item, position, m_error)) break;
        if (!take_text(parser, text)) {
            m_error.type(map_error_t::invalid_format);
            break;
        }
        if (!add_item(known, position, item, std::move(text), m_error)) break;
    }
    return m_error;
}

void map_t::clear()
{
    m_items.clear();
}

ustring8 map_t::id()
{
    return m_id;
}

bool map_t::has_item(const ustring8& item_name) const
{
    return m_items.read().count(item_name) != 0;
}

bool map_t::get_arg(const ustring8& item_name, ustring8& value) const
{
    const auto found = m_items.read().find(item_name);
    if (found == m_items.read().end()) return false;
    value = found->second;
    return true;
}

map_t::items::iterator map_t::begin()
{
    return m_items.expose().begin();
}

map_t::items::iterator map_t::end()
{
    return m_items.expose().end();
}

bool map_t::empty()
{
    return m_items.read().empty();
}

}  // namespace data_mapper4
