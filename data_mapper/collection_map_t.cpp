#include "data_mapper/collection_map_t.h"

#include <algorithm>

#include "data_mapper/attrib_schema.h"
#include "data_mapper/item_loader.h"

namespace data_mapper4 {

collection_map_t::collection_map_t() = default;
collection_map_t::collection_map_t(const collection_map_t& other) = default;
collection_map_t::~collection_map_t() = default;
collection_map_t& collection_map_t::operator=(const collection_map_t& other) = default;

map_error_t collection_map_t::load(const ustring8& map_name, xml_stream_parser& parser)
{
    m_id = map_name;
    item_reader reader(MT_COLLECTION, parser, m_attrib_names, m_error);
    return load_items(reader, m_items, texts_of);
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
    return m_items.read().count(item_name) != 0;
}

bool collection_map_t::get_attribs(const ustring8& item_name, std::map<ustring8, ustring8>& attribs) const
{
    // The name may be one of the strings in `attribs`, so search before clearing.
    const auto found = m_items.read().find(item_name);
    attribs.clear();
    if (found == m_items.read().end()) return false;
    fill_attribs(m_attrib_names, found->second, attribs);
    return true;
}

bool collection_map_t::get_attrib(const ustring8& item_name, const ustring8& attrib_name, ustring8& value) const
{
    const auto found = m_items.read().find(item_name);
    if (found == m_items.read().end()) return false;
    const auto name = std::find(m_attrib_names.begin(), m_attrib_names.end(), attrib_name);
    if (name == m_attrib_names.end()) return false;
    value = value_at(found->second, static_cast<std::size_t>(name - m_attrib_names.begin()));
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
    return m_items.read().empty();
}

}  // namespace data_mapper4
