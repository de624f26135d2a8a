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

bool has_equal_pair(const attrib_schema& schema)
{
    if (schema.empty()) return false;
    // In a second load into one table, every element appends its names to the schema, "name" first. Checking the first
    // entry saves sorting an ever longer list.
    if (std::find(std::next(schema.begin()), schema.end(), schema.front()) != schema.end()) return true;
    std::vector<std::string_view> sorted(schema.begin(), schema.end());
    std::sort(sorted.begin(), sorted.end());
    return std::adjacent_find(sorted.begin(), sorted.end()) != sorted.end();
}

// Adds the row of an element whose attributes are in the schema's order, as most are. Returns false if they are not.
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

// Adds the row of any element. Returns false if an attribute after the first is not in the schema.
bool add_by_name(const xml_element& element, const attrib_schema& schema, attrib_row& row)
{
    struct named
    {
        const xml_value* value;
        bool is_in_schema;
    };
    std::map<std::string_view, named> by_name;  // the first of each name
    for (const xml_attribute& each : element.attributes) by_name.insert({each.name, {&each.value, false}});
    for (const ustring8& name : schema) {
        const auto found = by_name.find(name);
        row.push_back(found == by_name.end() ? xml_value() : *found->second.value);
        if (found != by_name.end()) found->second.is_in_schema = true;
    }
    return std::all_of(std::next(element.attributes.begin()), element.attributes.end(),
                       [&](const xml_attribute& each) { return by_name.at(each.name).is_in_schema; });
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
    return result(add_by_name(element, schema, row) ? map_error_t::no_error : map_error_t::collection_error);
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
