#include "data_mapper/report/value_count.h"

#include <algorithm>
#include <string_view>

#include "data_mapper/map_kind.h"
#include "platform/xml_element.h"

namespace data_mapper4 {

namespace {

using form = NUVEK_2_18::parser::xml_element::kind;

// A map, as far as it has been read.
struct map_size
{
    const map_kind* traits = nullptr;  // null outside maps
    std::size_t position = 0;
    std::uint64_t texts = 0;  // elements with a value of their own
    std::uint64_t rows = 0;
    std::uint64_t widest = 0;  // the most attributes of a row

    // Divides, because the product may overflow.
    bool take(std::uint64_t& left) const
    {
        const bool fits = texts <= left && (rows == 0 || widest <= (left - texts) / rows);
        if (fits) left -= texts + rows * widest;
        return fits;
    }
};

bool is_row(const map_kind& traits, const NUVEK_2_18::parser::xml_index& index, std::size_t position)
{
    if (traits.item == item_form::name_and_attributes) return true;
    return traits.args == arg_form::rows && index.name_at(position) != "item";
}

// As load reads it: a map goes on as long as there are items and args, nested or not.
bool is_content(const NUVEK_2_18::parser::xml_index& index, std::size_t position)
{
    if (index.form_at(position) != form::opening) return index.form_at(position) == form::whole;
    const std::string_view tag = index.name_at(position);
    return tag == "item" || tag == "arg";
}

}  // namespace

std::optional<std::size_t> take_values(const NUVEK_2_18::parser::xml_document& document, std::uint64_t& left)
{
    map_size map;
    std::size_t attributes = 0;
    for (std::size_t next = 0; next != document.index.size();) {
        const std::size_t at = next;
        next = document.index.skip(at, attributes);
        if (!is_content(document.index, at)) {
            if (!map.take(left)) return map.position;
            const bool is_map = document.index.form_at(at) == form::opening;
            map = {is_map ? find_kind(document.index.name_at(at)) : nullptr, at};
        } else if (map.traits != nullptr && is_row(*map.traits, document.index, at)) {
            ++map.rows;
            map.widest = std::max<std::uint64_t>(map.widest, attributes);
        } else if (map.traits != nullptr) {
            ++map.texts;
        }
    }
    return map.take(left) ? std::nullopt : std::optional<std::size_t>(map.position);
}

}  // namespace data_mapper4
