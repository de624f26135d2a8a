// Internal: attribute names and rows, for the two kinds of map with attributes.
//
// A schema is the list of attribute names that a map may use. A row holds a value for each of them, in the schema's
// order; it is empty if the element leaves the attribute out.
#pragma once

#include <cstddef>
#include <map>
#include <string_view>
#include <vector>

#include "data_mapper/item_writer.h"
#include "data_mapper/map_error_t.h"
#include "platform/xml_element.h"

namespace data_mapper4 {

using NUVEK_2_18::parser::xml_element;
using NUVEK_2_18::parser::xml_value;

// The schema of a map while the map is loaded. The cost of a row grows only with the logarithm of the schema's size.
class attrib_schema
{
public:
    // `names` are the map's attribute names, and must not be changed by anybody else.
    explicit attrib_schema(std::vector<ustring8>& names) : m_names(names) {}

    // Appends the element's attribute names to the schema. Returns no_error, or duplicate_attrib if two names of the
    // whole schema are equal; the appended names stay. The line is 0.
    map_error_t read_names(const xml_element& element);

    // Finds the places of the element's attributes in the schema. Returns no_error; or collection_error if the element
    // has at least two more attributes than the schema has names, or an attribute after its first one that is not in the
    // schema. The line is 0.
    map_error_t read_row(const xml_element& element);

    // Adds the row that was read to the item. If several attributes have the same name, the first one counts. If the
    // element is the item itself, its first value is the key.
    void write_row(const xml_element& element, bool is_item, item_writer& to) const;

private:
    struct place
    {
        std::size_t column;
        std::size_t attribute;
    };

    std::size_t column_of(std::string_view name, std::size_t next) const;
    void sort_row();

    std::vector<ustring8>& m_names;
    std::vector<std::size_t> m_sorted;  // the columns in the order of their names
    bool m_has_equal_names = false;
    std::vector<place> m_row;  // in the order of the columns
};

// Adds the value to the item.
void write_value(const xml_value& value, item_writer& to);

// Takes a row and adds its values to `attribs` by name, except under names already there. Values are empty if the row
// is too short because it was stored before the schema grew.
void fill_attribs(const std::vector<ustring8>& names, item_values& row, std::map<ustring8, ustring8>& attribs);

}  // namespace data_mapper4
