#include "data_mapper/collection_map_t.h"

#include <algorithm>

#include "data_mapper/attrib_schema.h"

namespace data_mapper4 {

collection_map_t::collection_map_t() = default;
collection_map_t::collection_map_t(const collection_map_t& other) = default;
collection_map_t::~collection_map_t() = default;
collection_map_t& collection_map_t::operator=(const collection_map_t& other) = default;

map_error_t collection_map_t::load(const ustring8& map_name, xml_stream_parser& parser)
{
    m_id = map_name;
    return m_items.load(MT_COLLECTION, parser, m_attrib_names, m_error);
}

void collection_map_t::clear()
{
    m_items.clear();
}

ustring8 collection_map_t::id()
{
    return m_id;
}

bool collection_map_t::has_item(const ustring8& item_name) const
{
    return m_items.has(item_name);
}

bool collection_map_t::get_attribs(const ustring8& item_name, std::map<ustring8, ustring8>& attribs) const
{
    // The name may be one of the strings in `attribs`, so search before clearing.
    item_store one;
    const stored_item found = m_items.find(item_name, one);
    attribs.clear();
    if (!found) return false;
    item_values row = found.values();
    fill_attribs(m_attrib_names, row, attribs);
    return true;
}

bool collection_map_t::get_attrib(const ustring8& item_name, const ustring8& attrib_name, ustring8& value) const
{
    item_store one;
    const stored_item found = m_items.find(item_name, one);
    if (!found) return false;
    const auto name = std::find(m_attrib_names.begin(), m_attrib_names.end(), attrib_name);
    if (name == m_attrib_names.end()) return false;
    found.values().copy_to(value, static_cast<std::size_t>(name - m_attrib_names.begin()));
    return true;
}

collection_map_t::items::iterator collection_map_t::begin()
{
    return m_items.expose().begin();
}

collection_map_t::items::iterator collection_map_t::end()
{
    return m_items.expose().end();
}

bool collection_map_t::empty()
{
    return m_items.size() == 0;
}

}  // namespace data_mapper4
