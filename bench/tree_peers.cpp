// The peers that first make a tree of the whole document.
#include <tinyxml2.h>
#include <pugixml.hpp>

#include <boost/property_tree/ptree.hpp>
#include <boost/property_tree/xml_parser.hpp>
#include <boost/version.hpp>
#include <rapidxml/rapidxml.hpp>

#include "contender.h"

namespace bench {

namespace {

bool read_pugixml(const std::string& path, table_filler* filler)
{
    pugi::xml_document document;
    if (!document.load_file(path.c_str())) return false;
    const auto take = [filler](pugi::xml_node element) {
        filler->take(element.name(), [element](const auto& take_attribute) {
            pugi::xml_attribute at = element.first_attribute();
            while (at && take_attribute(at.name(), std::string_view(at.value()))) at = at.next_attribute();
        });
    };
    if (filler == nullptr) return true;
    for (const pugi::xml_node map : document.document_element()) {
        take(map);
        for (const pugi::xml_node element : map) take(element);
    }
    return true;
}

// Parses in place. References are resolved, because the tables need that; everything else that takes time is left out:
// nodes for white space between elements, and zeros after names and values, whose sizes are known.
bool read_rapidxml(const std::string& path, table_filler* filler)
{
    constexpr int options =
        rapidxml::parse_no_data_nodes | rapidxml::parse_no_element_values | rapidxml::parse_no_string_terminators;
    const file_text file = read_file(path);
    rapidxml::xml_document<> document;
    try {
        if (file.bytes) document.parse<options>(file.bytes.get());
    } catch (const rapidxml::parse_error&) {
        return false;
    }
    const rapidxml::xml_node<>* const root = document.first_node();
    if (root == nullptr || filler == nullptr) return root != nullptr;
    const auto take = [filler](const rapidxml::xml_node<>* element) {
        filler->take({element->name(), element->name_size()}, [element](const auto& take_attribute) {
            const rapidxml::xml_attribute<>* at = element->first_attribute();
            while (at != nullptr &&
                   take_attribute({at->name(), at->name_size()}, std::string_view(at->value(), at->value_size()))) {
                at = at->next_attribute();
            }
        });
    };
    for (auto map = root->first_node(); map != nullptr; map = map->next_sibling()) {
        take(map);
        for (auto element = map->first_node(); element != nullptr; element = element->next_sibling()) take(element);
    }
    return true;
}

bool read_tinyxml2(const std::string& path, table_filler* filler)
{
    tinyxml2::XMLDocument document;
    if (document.LoadFile(path.c_str()) != tinyxml2::XML_SUCCESS) return false;
    const auto take = [filler](const tinyxml2::XMLElement* element) {
        filler->take(element->Name(), [element](const auto& take_attribute) {
            const tinyxml2::XMLAttribute* at = element->FirstAttribute();
            while (at != nullptr && take_attribute(at->Name(), std::string_view(at->Value()))) at = at->Next();
        });
    };
    auto map = document.RootElement()->FirstChildElement();
    for (; map != nullptr; map = map->NextSiblingElement()) {
        take(map);
        auto element = map->FirstChildElement();
        for (; element != nullptr; element = element->NextSiblingElement()) take(element);
    }
    return true;
}

using boost::property_tree::ptree;

// An element's attributes are the children of its first child. Their values are moved out of the tree.
void take_tree(const std::string& tag, ptree& element, table_filler* filler)
{
    filler->take(tag, [&](const auto& take_attribute) {
        if (element.empty() || element.front().first != "<xmlattr>") return;
        for (auto& [name, value] : element.front().second) {
            if (!take_attribute(name, std::move(value.data()))) return;
        }
    });
}

bool read_boost_ptree(const std::string& path, table_filler* filler)
{
    ptree document;
    try {
        boost::property_tree::read_xml(path, document, boost::property_tree::xml_parser::no_comments);
    } catch (const boost::property_tree::xml_parser_error&) {
        return false;
    }
    for (auto& [map_tag, map] : document.front().second) {
        take_tree(map_tag, map, filler);
        for (auto& [tag, element] : map) {
            if (tag != "<xmlattr>") take_tree(tag, element, filler);
        }
    }
    return true;
}

}  // namespace

const peer pugixml = {"pugixml", std::to_string(PUGIXML_VERSION), read_pugixml, true};
const peer rapidxml = {"rapidxml", "1.13", read_rapidxml, true};
const peer tinyxml2 = {"tinyxml2", std::to_string(TIXML2_MAJOR_VERSION) + "." + std::to_string(TIXML2_MINOR_VERSION),
                       read_tinyxml2, false};
const peer boost_ptree = {"boost_ptree", BOOST_LIB_VERSION, read_boost_ptree, false};

}  // namespace bench
