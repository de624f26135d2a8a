#include "data_mapper/vector_map_t.h"

#include "data_mapper/item_loader.h"

namespace data_mapper4 {

vector_map_t::vector_map_t() = default;
vector_map_t::vector_map_t(const vector_map_t& other) = default;
vector_map_t::~vector_map_t() = default;
vector_map_t& vector_map_t::operator=(const vector_map_t& other) = default;

map_error_t vector_map_t::load(const ustring8& map_name, xml_stream_parser& parser)
{
    m_id = map_name;
    attrib_schema no_schema;
    item_reader reader(MT_VECTOR, parser, no_schema, m_error);
    return load_items(reader, m_items, texts_of);
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
    // The name may be one of the strings in `values`, so they are not touched before the search.
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
