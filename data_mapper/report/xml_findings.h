// Internal: explains why a file is not well-formed XML, or ends early.
#pragma once

#include <cstddef>
#include <vector>

#include "data_mapper/report/file_findings.h"
#include "platform/xml_document.h"

namespace data_mapper4 {

// Returns the positions of the elements that are open at the end, or at the fault: the root's first.
std::vector<std::size_t> left_open(const NUVEK_2_18::parser::xml_document& document);

// Adds the finding of a document with a fault, or of one that ends with an element open.
void add_xml_finding(file_findings& findings, const NUVEK_2_18::parser::xml_document& document,
                     const std::vector<std::size_t>& open);

}  // namespace data_mapper4
