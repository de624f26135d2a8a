#include <pugixml.hpp>

#include "contender.h"

namespace bench {

namespace {

class attribute_cursor
{
public:
    explicit attribute_cursor(pugi::xml_node element) : m_at(element.first_attribute()) {}
    bool at_end() const { return !m_at; }
    void next() { m_at = m_at.next_attribute(); }
    std::string_view name() const { return m_at.name(); }
    std::string_view value() const { return m_at.value(); }

private:
    pugi::xml_attribute m_at;
};

bool read(const std::string& path, table_filler& filler)
{
    pugi::xml_document document;
    if (!document.load_file(path.c_str())) return false;
    for (const pugi::xml_node map : document.document_element()) {
        if (!filler.take(map.name(), attribute_cursor(map))) return false;
        for (const pugi::xml_node element : map) {
            if (!filler.take(element.name(), attribute_cursor(element))) return false;
        }
    }
    return true;
}

bool parse(const std::string& path)
{
    pugi::xml_document document;
    return static_cast<bool>(document.load_file(path.c_str()));
}

}  // namespace

const peer pugixml = {"pugixml", std::to_string(PUGIXML_VERSION), read, parse};

}  // namespace bench
