#include "data_mapper/item_content.h"

#include <string_view>

namespace data_mapper4 {

namespace {

bool is_waiting(xml_element_queue& queue, std::string_view tag)
{
    return !queue.empty() && queue.front().tag == tag;
}

}  // namespace

bool is_item_waiting(xml_element_queue& queue)
{
    return is_waiting(queue, "item");
}

bool is_arg_waiting(xml_element_queue& queue)
{
    return is_waiting(queue, "arg");
}

bool has_form(const xml_element& element, element_form form)
{
    const auto& attributes = element.attributes;
    if (attributes.empty() || attributes.front().name != "name") return false;
    if (form == element_form::name_only && attributes.size() != 1) return false;
    return !element.has_data;
}

const xml_value& name_of(const xml_element& element)
{
    return element.attributes.front().value;
}

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
    for (const xml_value* value = values; value != values + size; ++value) texts.push_back(value->text());
    return texts;
}

}  // namespace data_mapper4
