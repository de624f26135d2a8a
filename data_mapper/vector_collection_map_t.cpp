#include "data_mapper/vector_collection_map_t.h"

#include "data_mapper/attrib_schema.h"
#include "data_mapper/item_loader.h"

namespace data_mapper4 {

namespace {

// Splits the values into rows as wide as the schema, which has at least one name if there are any rows.
std::vector<std::vector<ustring8>> rows_of(const xml_value* values, std::size_t size, std::size_t width)
{
    std::vector<std::vector<ustring8>> rows;
    rows.reserve(size == 0 ? 0 : size / width);
    for (std::size_t i = 0; i < size; i += width) rows.push_back(texts_of(values + i, width));
    return rows;
}

}  // namespace

vector_collection_map_t::vector_collection_map_t() = default;
vector_collection_map_t::vector_collection_map_t(const vector_collection_map_t& other) = default;
vector_collection_map_t::~vector_collection_map_t() = default;
vector_collection_map_t& vector_collection_map_t::operator=(const vector_collection_map_t& other) = default;

map_error_t vector_collection_map_t::load(const ustring8& map_name, xml_stream_parser& parser)
{
    m_id = map_name;
    item_reader reader(MT_VECTOR_COLLECTION, parser, m_attrib_names, m_error);
    return load_items(reader, m_items, [this](const xml_value* values, std::size_t size) {
        return rows_of(values, size, m_attrib_names.size());
    });
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
    return m_items.read().count(item_name) != 0;
}

bool vector_collection_map_t::get_args_vector(const ustring8& item_name,
                                              std::vector<std::map<ustring8, ustring8>>& args_vector) const
{
    // The name may be one of the strings in `args_vector`, so search before clearing.
    const auto found = m_items.read().find(item_name);
    args_vector.clear();
    if (found == m_items.read().end()) return false;
    args_vector.resize(found->second.size());
    auto attribs = args_vector.begin();
    for (const std::vector<ustring8>& row : found->second) fill_attribs(m_attrib_names, row, *attribs++);
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
    return m_items.read().empty();
}

}  // namespace data_mapper4
