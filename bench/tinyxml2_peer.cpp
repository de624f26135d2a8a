#include <tinyxml2.h>

#include "contender.h"

namespace bench {

namespace {

using tinyxml2::XMLElement;

class attribute_cursor
{
public:
    explicit attribute_cursor(const XMLElement* element) : m_at(element->FirstAttribute()) {}
    bool at_end() const { return m_at == nullptr; }
    void next() { m_at = m_at->Next(); }
    std::string_view name() const { return m_at->Name(); }
    std::string_view value() const { return m_at->Value(); }

private:
    const tinyxml2::XMLAttribute* m_at;
};

bool take(const XMLElement* element, table_filler& filler)
{
    return filler.take(element->Name(), attribute_cursor(element));
}

bool read(const std::string& path, table_filler& filler)
{
    tinyxml2::XMLDocument document;
    if (document.LoadFile(path.c_str()) != tinyxml2::XML_SUCCESS) return false;
    const XMLElement* map = document.RootElement()->FirstChildElement();
    for (; map != nullptr; map = map->NextSiblingElement()) {
        if (!take(map, filler)) return false;
        const XMLElement* element = map->FirstChildElement();
        for (; element != nullptr; element = element->NextSiblingElement()) {
            if (!take(element, filler)) return false;
        }
    }
    return true;
}

}  // namespace

const peer tinyxml2 = {"tinyxml2",
                       std::to_string(TIXML2_MAJOR_VERSION) + "." + std::to_string(TIXML2_MINOR_VERSION) + "." +
                           std::to_string(TIXML2_PATCH_VERSION),
                       read, nullptr};

}  // namespace bench
