// Internal: attribute names and rows, for the two kinds of map with attributes.
//
// A schema is the list of attribute names that a map may use. A row holds a value for each of them, in the schema's
// order; it is empty if the element leaves the attribute out.
#pragma once

#include <cstddef>
#include <map>
#include <vector>

#include "data_mapper/map_error_t.h"
#include "platform/xml_element.h"

namespace data_mapper4 {

using attrib_schema = std::vector<ustring8>;
using attrib_row = std::vector<NUVEK_2_18::parser::xml_value>;

// Appends the element's attribute names to the schema, without the first one if `leave_out_first` is set. Returns
// no_error, or duplicate_attrib if two names of the whole schema are equal; the appended names stay. The line is 0.
map_error_t read_attrib_names(const NUVEK_2_18::parser::xml_element& element, attrib_schema& schema,
                              bool leave_out_first);

// Appends the element's value of every attribute in the schema to the row, and returns no_error. Returns
// collection_error, and the row is of no use, if the element has at least two more attributes than the schema has
// names, or an attribute after its first one that is not in the schema. The line is 0.
//
// If several attributes have the same name, the first one counts.
map_error_t read_attrib_values(const NUVEK_2_18::parser::xml_element& element, const attrib_schema& schema,
                               attrib_row& row);

// Returns the row's value for the schema's k-th name, counted from 0. It is the empty string if the row is too short
// because it was stored before the schema grew.
ustring8 value_at(const std::vector<ustring8>& row, std::size_t k);

// Adds the row's values to `attribs` by name, except for names that it already has.
void fill_attribs(const attrib_schema& schema, const std::vector<ustring8>& row, std::map<ustring8, ustring8>& attribs);

}  // namespace data_mapper4
