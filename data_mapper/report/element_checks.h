// Internal: the checks of a single element, whichever map it is in.
#pragma once

#include <cstddef>
#include <string_view>

#include "data_mapper/report/file_findings.h"
#include "platform/xml_document.h"
#include "platform/xml_element.h"

namespace data_mapper4 {

using NUVEK_2_18::parser::xml_document;
using NUVEK_2_18::parser::xml_element;

// The attributes that an element may have: only the wanted one, or the wanted one first and then any others.
enum class attribute_form
{
    only,
    first,
};

// Checks that the element has the wanted attribute ("name" or "file") in this form. Adds at most one finding, and
// returns true if it adds none.
bool check_attributes(file_findings& findings, const xml_element& element, std::string_view wanted,
                      attribute_form form);

// Returns the name of an attribute that the element must not have; empty if there is none.
std::string_view unexpected_attribute(const xml_element& element, std::string_view wanted, attribute_form form);

// Checks that the element's first attribute is not empty.
bool check_not_empty(file_findings& findings, const xml_element& element, rule broken);

// Returns the first text that is not blank in a stretch of text, up to the end of its line; the position is that of the
// stretch in the index. Empty if it is all blank.
std::string_view first_text(const xml_document& document, std::size_t position);

// Adds a finding for each text of an element, where load ignores it. `next` is the position of the next element.
void check_no_texts(file_findings& findings, const xml_document& document, const xml_element& element,
                    std::size_t next);

// Returns the tag as it is written, without its attributes: `<item`, or `</item` of a closing element.
std::string_view tag_part(const xml_element& element);

}  // namespace data_mapper4
