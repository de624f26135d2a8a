#include <rapidxml/rapidxml.hpp>

#include "contender.h"

namespace bench {

namespace {

using xml_node = rapidxml::xml_node<>;

// In place. References are resolved, as the tables need it; all else that costs time is left out: nodes for the white
// space between elements, and zeros behind names and values, which have their sizes.
constexpr int options =
    rapidxml::parse_no_data_nodes | rapidxml::parse_no_element_values | rapidxml::parse_no_string_terminators;

class attribute_cursor
{
public:
    explicit attribute_cursor(const xml_node* element) : m_at(element->first_attribute()) {}
    bool at_end() const { return m_at == nullptr; }
    void next() { m_at = m_at->next_attribute(); }
    std::string_view name() const { return {m_at->name(), m_at->name_size()}; }
    std::string_view value() const { return {m_at->value(), m_at->value_size()}; }

private:
    const rapidxml::xml_attribute<>* m_at;
};

bool take(const xml_node* element, table_filler& filler)
{
    return filler.take({element->name(), element->name_size()}, attribute_cursor(element));
}

bool take_all(const xml_node* root, table_filler& filler)
{
    for (const xml_node* map = root->first_node(); map != nullptr; map = map->next_sibling()) {
        if (!take(map, filler)) return false;
        for (const xml_node* element = map->first_node(); element != nullptr; element = element->next_sibling()) {
            if (!take(element, filler)) return false;
        }
    }
    return true;
}

bool parse_into(rapidxml::xml_document<>& document, const file_text& text)
{
    if (!text.bytes) return false;
    try {
        document.parse<options>(text.bytes.get());
    } catch (const rapidxml::parse_error&) {
        return false;
    }
    return document.first_node() != nullptr;
}

bool read(const std::string& path, table_filler& filler)
{
    const file_text text = read_file(path);
    rapidxml::xml_document<> document;
    return parse_into(document, text) && take_all(document.first_node(), filler);
}

bool parse(const std::string& path)
{
    const file_text text = read_file(path);
    rapidxml::xml_document<> document;
    return parse_into(document, text);
}

}  // namespace

const peer rapidxml = {"rapidxml", "1.13", read, parse};

}  // namespace bench
