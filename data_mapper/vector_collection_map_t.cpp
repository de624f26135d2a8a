#include "data_mapper/vector_collection_map_t.h"

#include "data_mapper/attrib_schema.h"

namespace data_mapper4 {

vector_collection_map_t::vector_collection_map_t() = default;
vector_collection_map_t::vector_collection_map_t(const vector_collection_map_t& other) = default;
vector_collection_map_t::~vector_collection_map_t() = default;
vector_collection_map_t& vector_collection_map_t::operator=(const vector_collection_map_t& other) = default;

map_error_t vector_collection_map_t::load(const ustring8& map_name, xml_stream_parser& parser)
{
    m_id = map_name;
    return m_items.load(MT_VECTOR_COLLECTION, parser, m_attrib_names, m_error);
}

void vector_collection_map_t::clear()
{
    m_items.clear();
}

ustring8 vector_collection_map_t::id()
{
    return m_id;
}

bool vector_collection_map_t::has_item(const ustring8& item_name) const
{
    return m_items.has(item_name);
}

bool vector_collection_map_t::get_args_vector(const ustring8& item_name,
                                              std::vector<std::map<ustring8, ustring8>>& args_vector) const
{
    // The name may be one of the strings in `args_vector`, so search before clearing.
    item_store one;
    const stored_item found = m_items.find(item_name, one);
    args_vector.clear();
    if (!found) return false;
    for (item_values rows = found.values(); !rows.empty();) {
        fill_attribs(m_attrib_names, rows, args_vector.emplace_back());
    }
    return true;
}

vector_collection_map_t::items::iterator vector_collection_map_t::begin()
{
    return m_items.expose().begin();
}

vector_collection_map_t::items::iterator vector_collection_map_t::end()
{
    return m_items.expose().end();
}

bool vector_collection_map_t::empty()
{
    return m_items.size() == 0;
}

}  // namespace data_mapper4
