#include "data_mapper/item_content.h"

namespace data_mapper4 {

bool is_sound_item(xml_element_queue& queue, element_form form)
{
    const xml_element& item = queue.front();
    if (!has_form(item, form) || name_of(item).empty()) return false;
    // An item that carries its attributes itself needs nothing behind it.
    return form == element_form::name_and_attributes || queue.size() > 1;
}

std::vector<ustring8> texts_of(const xml_value* values, std::size_t size)
{
    std::vector<ustring8> texts;
    texts.reserve(size);
    for (const xml_value* value = values; value != values + size; ++value) {
        if (value->is_plain) {
            texts.emplace_back(value->written);
        } else {
            texts.push_back(value->resolved());
        }
    }
    return texts;
}

}  // namespace data_mapper4
