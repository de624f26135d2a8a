#include "data_mapper/map_t.h"

#include "data_mapper/item_loader.h"

namespace data_mapper4 {

map_t::map_t() = default;
map_t::map_t(const map_t& other) = default;
map_t::~map_t() = default;
map_t& map_t::operator=(const map_t& other) = default;

map_error_t map_t::load(const ustring8& map_name, xml_stream_parser& parser)
{
    m_id = map_name;
    attrib_schema no_schema;
    item_reader reader(MT_SIMPLE, parser, no_schema, m_error);
    return load_items(reader, m_items, [](const xml_value* value, std::size_t /*size*/) { return value->text(); });
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
