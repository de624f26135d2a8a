// Internal: an element of a document, as views of its text.
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
    bool is_plain = true;  // the raw value is the normalised one: no reference, no white space other than spaces

    bool empty() const { return raw.empty(); }

    // The normalised value: references resolved, white space turned into spaces.
    strings::ustring8 text() const { return is_plain ? strings::ustring8(raw) : normalised(); }

    strings::ustring8 normalised() const;
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
        opening,  // the start tag of an element with children, or of one that is still open where the text ends
        closing,
    };

    kind form = kind::whole;
    const char* begin = nullptr;  // the tag's `<`
    std::string_view tag;
    std::vector<xml_attribute> attributes;
    std::size_t texts = 0;  // stretches of text that are its data; none if they are all white space

    bool has_data() const { return texts != 0; }
};

}  // namespace NUVEK_2_18::parser
