#include "data_mapper/item_table.h"

#include <map>
#include <type_traits>
#include <utility>

#include "data_mapper/item_reader.h"
#include "data_mapper/item_writer.h"

namespace data_mapper4 {

namespace {

void add_values(const ustring8& text, item_writer& to)
{
    to.add(text);
}

void add_values(const std::vector<ustring8>& texts, item_writer& to)
{
    for (const ustring8& each : texts) to.add(each);
}

void add_values(const std::vector<std::vector<ustring8>>& rows, item_writer& to)
{
    for (const auto& each : rows) {
        add_values(each, to);
        to.end_row();
    }
}

template <class item>
void add_item(const item& each, item_writer& to)
{
    to.begin(each.first);
    add_values(each.second, to);
    to.end();
}

// Copies the item into a map, at the end if it belongs there. Returns false if the map already has its key.
template <class map>
bool append(const stored_item& item, map& to)
{
    std::remove_const_t<typename map::mapped_type> value;
    item.values().copy_to(value);
    const std::size_t size = to.size();
    to.emplace_hint(to.end(), item.key(), std::move(value));
    return to.size() != size;
}

}  // namespace

template <class map>
item_table<map>::item_table(const item_table& other) : m_store(other.store())
{
}

template <class map>
item_table<map>& item_table<map>::operator=(const item_table& other)
{
    if (this == &other) return *this;
    m_store = other.store();
    m_map.reset();
    return *this;
}

template <class map>
bool item_table<map>::has(const ustring8& key) const
{
    return m_map ? m_map->count(key) != 0 : static_cast<bool>(m_store.find(key));
}

template <class map>
void item_table<map>::clear()
{
    m_store = item_store();
    m_map.reset();
}

template <class map>
item_store item_table<map>::store() const
{
    if (!m_map) return m_store;
    item_store made;
    item_writer writer(made);
    for (const auto& each : *m_map) add_item(each, writer);
    return made;
}

template <class map>
map item_table<map>::read() const
{
    map items;
    const item_store all = store();
    for (const stored_item& each : all.sorted()) append(each, items);
    return items;
}

template <class map>
map& item_table<map>::expose()
{
    if (!m_map) {
        m_map = std::make_unique<map>(read());
        m_store = item_store();
    }
    return *m_map;
}

template <class map>
map_error_t item_table<map>::load(map_type kind, NUVEK_2_18::parser::xml_stream_parser& parser,
                                  std::vector<ustring8>& schema, map_error_t& error)
{
    if (!m_map) return item_reader(kind, parser, schema, error, m_store).load();
    item_store added;
    item_reader(kind, parser, schema, error, added, [&](std::string_view key) {
        return m_map->count(ustring8(key)) != 0;
    }).load();
    bool is_added = true;
    added.for_each([&](const stored_item& each) { is_added = is_added && append(each, *m_map); });
    if (!is_added) error.type(map_error_t::memory_error);
    return error;
}

template <class map>
stored_item item_table<map>::copy(const ustring8& key, item_store& one) const
{
    const auto found = m_map->find(key);
    item_writer writer(one);
    if (found != m_map->end()) add_item(*found, writer);
    return one.find(key);
}

// The std::map types of the four kinds of table; two kinds share one.
template class item_table<std::map<ustring8, const ustring8>>;
template class item_table<std::map<ustring8, std::vector<ustring8>>>;
template class item_table<std::map<ustring8, std::vector<std::vector<ustring8>>>>;

}  // namespace data_mapper4
