#include "data_mapper/attrib_schema.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

namespace data_mapper4 {

namespace {

using NUVEK_2_18::parser::xml_attribute;
using NUVEK_2_18::parser::xml_element;
using NUVEK_2_18::parser::xml_value;

// Up to here names are compared one by one; beyond it they are sorted first, so that no file can make the work grow
// with the square of its attributes.
constexpr std::size_t few_names = 16;

bool has_equal_pair(const attrib_schema& schema)
{
    const auto stands_again = [&](attrib_schema::const_iterator name) {
        return std::find(std::next(name), schema.end(), *name) != schema.end();
    };
    // A second load into one table appends to a schema again and again, and every element's first name is "name":
    // without this look at the first entry each of them would sort a longer list.
    if (!schema.empty() && stands_again(schema.begin())) return true;
    if (schema.size() <= few_names) {
        for (auto name = schema.begin(); name != schema.end(); ++name) {
            if (stands_again(name)) return true;
        }
        return false;
    }
    std::vector<std::string_view> sorted(schema.begin(), schema.end());
    std::sort(sorted.begin(), sorted.end());
    return std::adjacent_find(sorted.begin(), sorted.end()) != sorted.end();
}

// An element's attributes, found by name. Keeps account of those that were.
class attribute_finder
{
public:
    explicit attribute_finder(const xml_element& element) : m_is_sorted(element.attributes.size() > few_names)
    {
        m_entries.reserve(element.attributes.size());
        for (const xml_attribute& each : element.attributes) m_entries.push_back({each.name, &each.value, false});
        // The element's own name need not be in the schema.
        if (!m_entries.empty()) m_entries.front().is_known = true;
        // Stable: of several attributes of one name the first one stays the first.
        if (m_is_sorted) std::stable_sort(m_entries.begin(), m_entries.end(), is_before);
    }

    // The value of the first attribute of that name, or nullptr.
    const xml_value* find(const ustring8& name)
    {
        const xml_value* value = nullptr;
        auto at = m_entries.begin();
        if (m_is_sorted) at = std::lower_bound(at, m_entries.end(), entry{name, nullptr, false}, is_before);
        for (; at != m_entries.end() && (!m_is_sorted || at->name == name); ++at) {
            if (at->name != name) continue;
            at->is_known = true;
            if (value == nullptr) value = at->value;
        }
        return value;
    }

    bool were_all_found() const
    {
        return std::all_of(m_entries.begin(), m_entries.end(), [](const entry& each) { return each.is_known; });
    }

private:
    struct entry
    {
        std::string_view name;
        const xml_value* value;
        bool is_known;
    };

    static bool is_before(const entry& a, const entry& b) { return a.name < b.name; }

    std::vector<entry> m_entries;
    bool m_is_sorted;
};

// Adds the row of an element whose attributes stand in the schema's order, as they mostly do. False for any other one.
bool add_in_order(const xml_element& element, const attrib_schema& schema, attrib_row& row)
{
    auto attribute = element.attributes.begin();
    const auto end = element.attributes.end();
    for (const ustring8& name : schema) {
        const bool is_next = attribute != end && attribute->name == name;
        row.push_back(is_next ? (attribute++)->value : xml_value());
    }
    return attribute == end;
}

map_error_t result(map_error_t::result_type type)
{
    map_error_t error;
    error.type(type);
    return error;
}

}  // namespace

map_error_t read_attrib_names(const xml_element& element, attrib_schema& schema, bool leave_out_first)
{
    auto attribute = element.attributes.begin();
    if (leave_out_first && attribute != element.attributes.end()) ++attribute;
    for (; attribute != element.attributes.end(); ++attribute) schema.emplace_back(attribute->name);
    return result(has_equal_pair(schema) ? map_error_t::duplicate_attrib : map_error_t::no_error);
}

map_error_t read_attrib_values(const xml_element& element, const attrib_schema& schema, attrib_row& row)
{
    if (schema.size() + 1 < element.attributes.size()) return result(map_error_t::collection_error);
    const std::size_t size_before = row.size();
    if (add_in_order(element, schema, row)) return result(map_error_t::no_error);
    row.resize(size_before);
    attribute_finder attributes(element);
    for (const ustring8& name : schema) {
        const xml_value* const value = attributes.find(name);
        row.push_back(value == nullptr ? xml_value() : *value);
    }
    if (attributes.were_all_found()) return result(map_error_t::no_error);
    row.resize(size_before);
    return result(map_error_t::collection_error);
}

ustring8 value_at(const std::vector<ustring8>& row, std::size_t k)
{
    return k < row.size() ? row[k] : ustring8();
}

void fill_attribs(const attrib_schema& schema, const std::vector<ustring8>& row, std::map<ustring8, ustring8>& attribs)
{
    for (std::size_t k = 0; k < schema.size(); ++k) attribs.emplace(schema[k], value_at(row, k));
}

}  // namespace data_mapper4
