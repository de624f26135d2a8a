#include "data_mapper/report/value_count.h"

#include <algorithm>

#include "data_mapper/map_kind.h"
#include "platform/xml_element.h"

namespace data_mapper4 {

namespace {

using NUVEK_2_18::parser::xml_document;
using NUVEK_2_18::parser::xml_element;

// The elements of one map that have values.
struct map_size
{
    const map_kind* kind = nullptr;  // null outside maps
    std::size_t position = 0;
    std::uint64_t texts = 0;  // items and args that have a value of their own
    std::uint64_t rows = 0;
    std::uint64_t widest = 0;  // the most attributes of a row

    void add(const xml_element& element)
    {
        const bool is_item = element.tag == "item";
        const bool is_row = is_item ? kind->item == item_form::name_and_attributes : kind->args == arg_form::rows;
        ++(is_row ? rows : texts);
        if (is_row) widest = std::max<std::uint64_t>(widest, element.attributes.size());
    }

    // Divides, because the product may be too large for a number.
    bool take(std::uint64_t& left) const
    {
        const bool fits = texts <= left && (rows == 0 || widest <= (left - texts) / rows);
        if (fits) left -= texts + rows * widest;
        return fits;
    }
};

}  // namespace

std::optional<std::size_t> take_values(const xml_document& document, std::uint64_t& left)
{
    map_size map;
    xml_element element;
    for (std::size_t position = 0; position != document.index.size();) {
        const std::size_t at = position;
        position = document.index.read(at, element);
        if (element.tag == "item" || element.tag == "arg") {
            if (map.kind != nullptr && element.form != xml_element::kind::closing) map.add(element);
        } else {
            // As load reads it, any other element ends the map.
            if (!map.take(left)) return map.position;
            map = {element.form == xml_element::kind::opening ? find_kind(element.tag) : nullptr, at};
        }
    }
    return map.take(left) ? std::nullopt : std::optional<std::size_t>(map.position);
}

}  // namespace data_mapper4
