#include "data_mapper/attrib_schema.h"

#include <algorithm>
#include <numeric>

namespace data_mapper4 {

namespace {

constexpr std::size_t no_column = static_cast<std::size_t>(-1);

map_error_t result(map_error_t::result_type type)
{
    map_error_t error;
    error.type(type);
    return error;
}

}  // namespace

// In a second load into one table, every element appends its names. Once two names are equal, the schema is therefore
// not sorted again.
map_error_t attrib_schema::read_names(const xml_element& element)
{
    for (const auto& attribute : element.attributes) m_names.emplace_back(attribute.name);
    if (!m_has_equal_names) {
        m_sorted.resize(m_names.size());
        std::iota(m_sorted.begin(), m_sorted.end(), std::size_t{0});
        std::sort(m_sorted.begin(), m_sorted.end(), [&](auto a, auto b) { return m_names[a] < m_names[b]; });
        const auto equal = [&](auto a, auto b) { return m_names[a] == m_names[b]; };
        m_has_equal_names = std::adjacent_find(m_sorted.begin(), m_sorted.end(), equal) != m_sorted.end();
    }
    return result(m_has_equal_names ? map_error_t::duplicate_attrib : map_error_t::no_error);
}

map_error_t attrib_schema::read_row(const xml_element& element)
{
    const auto& attributes = element.attributes;
    if (m_names.size() + 1 < attributes.size()) return result(map_error_t::collection_error);
    m_row.clear();
    bool is_in_order = true;
    std::size_t next = 0;
    for (std::size_t i = 0; i < attributes.size(); ++i) {
        const std::size_t column = column_of(attributes[i].name, next);
        if (column == no_column && i != 0) return result(map_error_t::collection_error);
        if (column == no_column) continue;
        is_in_order = is_in_order && column >= next;
        m_row.push_back({column, i});
        next = column + 1;
    }
    if (!is_in_order) sort_row();
    return result(map_error_t::no_error);
}

void attrib_schema::write_row(const xml_element& element, bool is_item, item_writer& to) const
{
    std::size_t next = 0;
    for (const place& each : m_row) {
        to.add_empty(each.column - next);
        if (is_item && each.attribute == 0) {
            to.add_key();
        } else {
            write_value(element.attributes[each.attribute].value, to);
        }
        next = each.column + 1;
    }
    to.add_empty(m_names.size() - next);
}

// Most attributes are at the next place, or soon after it.
std::size_t attrib_schema::column_of(std::string_view name, std::size_t next) const
{
    constexpr std::size_t few = 4;
    const std::size_t end = std::min(m_names.size(), next + few);
    for (std::size_t column = next; column < end; ++column) {
        if (m_names[column] == name) return column;
    }
    const auto is_before = [&](std::size_t column, std::string_view wanted) { return m_names[column] < wanted; };
    const auto found = std::lower_bound(m_sorted.begin(), m_sorted.end(), name, is_before);
    return found == m_sorted.end() || m_names[*found] != name ? no_column : *found;
}

void attrib_schema::sort_row()
{
    const auto is_before = [](const place& a, const place& b) { return a.column < b.column; };
    std::stable_sort(m_row.begin(), m_row.end(), is_before);
    const auto is_same = [](const place& a, const place& b) { return a.column == b.column; };
    m_row.erase(std::unique(m_row.begin(), m_row.end(), is_same), m_row.end());
}

void write_value(const xml_value& value, item_writer& to)
{
    if (value.is_plain) {
        to.add(value.raw);
    } else {
        to.add(value.normalized());
    }
}

void fill_attribs(const std::vector<ustring8>& names, item_values& row, std::map<ustring8, ustring8>& attribs)
{
    bool has_value = true;
    for (const ustring8& name : names) {
        std::string_view value;
        has_value = has_value && row.take(value);
        attribs.emplace(name, value);
    }
    for (std::string_view rest; has_value;) has_value = row.take(rest);
}

}  // namespace data_mapper4
