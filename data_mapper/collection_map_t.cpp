#include "data_mapper/collection_map_t.h"

#include <algorithm>

#include "data_mapper/attrib_schema.h"
#include "data_mapper/item_loader.h"

namespace data_mapper4 {

namespace {

// group = item      whose attributes are a row; the first one's names are the schema
//
// The results of the schema functions are kept whole, their line 0 included: a fault that they find, and a load that
// added an item, report line 0 and not the item's, unlike the other kinds of map.
class row_reader
{
public:
    using items = std::map<ustring8, std::vector<ustring8>>;
    static constexpr element_form form = element_form::name_and_attributes;
    static constexpr bool ends_at_line = false;

    explicit row_reader(attrib_schema& schema) : m_schema(schema) {}

    bool can_repeat() const { return m_is_schema_read; }

    group take(xml_element_queue& queue, std::vector<xml_value>& values, load_outcome& outcome)
    {
        const xml_element& item = queue.front();
        map_error_t result;
        if (!m_is_schema_read) result = read_attrib_names(item, m_schema, false);
        if (result.type() == map_error_t::no_error) {
            m_is_schema_read = true;
            result = read_attrib_values(item, m_schema, values);
        }
        queue.pop();
        outcome.set(result);
        return outcome.is_sound() ? group::add : group::end;
    }

    static std::vector<ustring8> make(const xml_value* values, std::size_t size) { return texts_of(values, size); }

private:
    attrib_schema& m_schema;
    bool m_is_schema_read = false;
};

}  // namespace

collection_map_t::collection_map_t() = default;
collection_map_t::collection_map_t(const collection_map_t& other) = default;
collection_map_t::~collection_map_t() = default;
collection_map_t& collection_map_t::operator=(const collection_map_t& other) = default;

map_error_t collection_map_t::load(const ustring8& map_name, xml_stream_parser& parser)
{
    return load_table(row_reader(m_attrib_names), map_name, parser, m_id, m_error, m_items);
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
    // The name may be one of the attributes, so they are not touched before the search is done.
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
