#include "data_mapper/vector_map_t.h"

namespace data_mapper4 {

vector_map_t::vector_map_t() = default;
vector_map_t::vector_map_t(const vector_map_t& other) = default;
vector_map_t::~vector_map_t() = default;
vector_map_t& vector_map_t::operator=(const vector_map_t& other) = default;

map_error_t vector_map_t::load(const ustring8& map_name, xml_stream_parser& parser)
{
    m_id = map_name;
    std::vector<ustring8> no_names;
    return m_items.load(MT_VECTOR, parser, no_names, m_error);
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
    return m_items.has(item_name);
}

bool vector_map_t::get_args(const ustring8& item_name, std::vector<ustring8>& values) const
{
    // The name may be one of the strings in `values`, so they are not touched before the search.
    item_store one;
    const stored_item found = m_items.find(item_name, one);
    if (found) {
        found.values().copy_to(values);
    } else {
        values.clear();
    }
    return static_cast<bool>(found);
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
    return m_items.size() == 0;
}

}  // namespace data_mapper4
