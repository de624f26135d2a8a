// Internal: the plain forms of markup, recognised fast.
//
// Nearly all markup of nearly all documents is plain: names in ASCII, values without references. What is recognised
// here is sound; what is not recognised is for xml_scanner to judge, from its beginning. The benchmark's rows "parse"
// pay for it.
#pragma once

#include <cstddef>
#include <string_view>

namespace NUVEK_2_18::parser {

struct plain_tag
{
    const char* end = nullptr;  // behind the tag; nullptr when it is not plain
    std::string_view name;
    bool is_empty_element = false;
};

// The start tag at `at`, which is a `<`. It has no more than a handful of attributes, all of them different. The text
// has zero bytes behind it, as a text_buffer's has.
plain_tag find_plain_start_tag(const char* at);

// The place behind the end tag at `at`, which is a `</`, if it is that of the element of this name and holds nothing
// else; or else nullptr.
const char* find_plain_end_tag(const char* at, std::string_view name);

}  // namespace NUVEK_2_18::parser
