// Internal: an element of a document, as views into its text.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "platform/ustring.h"

namespace NUVEK_2_18::parser {

// An attribute's value.
struct xml_value
{
    std::string_view raw;  // what is between the quotes
    bool is_plain = true;  // the normalized value is the raw one: no reference, no white space other than spaces

    bool empty() const { return raw.empty(); }

    // The normalized value: references resolved, each white-space character replaced by a space.
    strings::ustring8 text() const { return is_plain ? strings::ustring8(raw) : normalized(); }

    strings::ustring8 normalized() const;
};

struct xml_attribute
{
    std::string_view name;
    xml_value value;
};

// What becomes one node. The views are valid as long as the document is.
struct xml_element
{
    enum class kind
    {
        whole,    // without child elements
        opening,  // the start tag of an element with children, or of one that is still open at the end of the text
        closing,
    };

    kind form = kind::whole;
    const char* begin = nullptr;  // the tag's `<`
    std::string_view tag;
    std::vector<xml_attribute> attributes;
    std::size_t texts = 0;  // the number of stretches of text in its data; 0 if they are all white space

    bool has_data() const { return texts != 0; }
};

}  // namespace NUVEK_2_18::parser
