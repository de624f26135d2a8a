// Internal: an element as it stands in a document's text, nothing copied.
#pragma once

#include <string_view>
#include <vector>

#include "platform/ustring.h"

namespace NUVEK_2_18::parser {

// An attribute's value.
struct xml_value
{
    std::string_view written;  // what stands between the quotes
    bool is_plain = true;      // it stands for just that: no reference, no white space other than spaces

    bool empty() const { return written.empty(); }

    // The value with its references resolved and its white space turned into spaces.
    strings::ustring8 text() const { return is_plain ? strings::ustring8(written) : resolved(); }

    strings::ustring8 resolved() const;
};

struct xml_attribute
{
    std::string_view name;
    xml_value value;
};

// What becomes one node. The views hold as long as the document.
struct xml_element
{
    enum class kind
    {
        whole,    // without child elements
        opening,  // the start tag of an element with children, or of one still open where the text ends
        closing,
    };

    kind form = kind::whole;
    const char* begin = nullptr;  // where the tag's `<` stands
    std::string_view tag;
    std::vector<xml_attribute> attributes;
    bool has_data = false;   // text other than white space
    unsigned long line = 0;  // of a node that was handed out, and perhaps changed; 0: that of `begin`, not counted yet
};

}  // namespace NUVEK_2_18::parser
