#include "data_mapper/map_t.h"

namespace data_mapper4 {

map_t::map_t() = default;
map_t::map_t(const map_t& other) = default;
map_t::~map_t() = default;
map_t& map_t::operator=(const map_t& other) = default;

map_error_t map_t::load(const ustring8& map_name, xml_stream_parser& parser)
{
    m_id = map_name;
    std::vector<ustring8> no_names;
    return m_items.load(MT_SIMPLE, parser, no_names, m_error);
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
    return m_items.has(item_name);
}

bool map_t::get_arg(const ustring8& item_name, ustring8& value) const
{
    item_store one;
    const stored_item found = m_items.find(item_name, one);
    if (found) found.values().copy_to(value);
    return static_cast<bool>(found);
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
    return m_items.size() == 0;
}

}  // namespace data_mapper4
