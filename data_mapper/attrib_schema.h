// Internal: attribute names and rows, for the two kinds of map whose elements carry attributes.
//
// A schema is the list of attribute names that a map may use; a row holds one value for each of them, in the schema's
// order, the empty string where the element leaves the attribute out.
#pragma once

#include <cstddef>
#include <map>
#include <vector>

#include "data_mapper/map_error_t.h"
#include "platform/xml_element.h"

namespace data_mapper4 {

using attrib_schema = std::vector<ustring8>;
using attrib_row = std::vector<NUVEK_2_18::parser::xml_value>;

// Appends the element's attribute names to the schema, without the first one if `leave_out_first`. no_error, or
// duplicate_attrib when two names of the whole schema are equal; the appended names stay. The line is always 0.
map_error_t read_attrib_names(const NUVEK_2_18::parser::xml_element& element, attrib_schema& schema,
                              bool leave_out_first);

// Appends the element's value of every attribute in the schema to the row. no_error, or collection_error, with the row
// as it was, when the element has more attributes than the schema has names plus one, or an attribute behind its first
// one that the schema does not have. The line is always 0.
//
// Of several attributes of one name the first one counts.
map_error_t read_attrib_values(const NUVEK_2_18::parser::xml_element& element, const attrib_schema& schema,
                               attrib_row& row);

// The row's entry for the schema's k-th name: the empty string where the row, stored before the schema grew, is
// shorter.
ustring8 value_at(const std::vector<ustring8>& row, std::size_t k);

// The attributes by name, without what `attribs` has already.
void fill_attribs(const attrib_schema& schema, const std::vector<ustring8>& row, std::map<ustring8, ustring8>& attribs);

}  // namespace data_mapper4
