#include <boost/property_tree/ptree.hpp>
#include <boost/property_tree/xml_parser.hpp>
#include <boost/version.hpp>

#include "contender.h"

namespace bench {

namespace {

using boost::property_tree::ptree;

constexpr const char* attributes_key = "<xmlattr>";

// An element's attributes are the children of its first child. Their values are moved out of the tree.
class attribute_cursor
{
public:
    explicit attribute_cursor(ptree& element) : m_at(element.end()), m_end(element.end())
    {
        if (element.empty() || element.front().first != attributes_key) return;
        m_at = element.front().second.begin();
        m_end = element.front().second.end();
    }
    bool at_end() const { return m_at == m_end; }
    void next() { ++m_at; }
    std::string_view name() const { return m_at->first; }
    std::string&& value() const { return std::move(m_at->second.data()); }

private:
    ptree::iterator m_at;
    ptree::iterator m_end;
};

bool take_all(ptree& root, table_filler& filler)
{
    for (auto& [map_tag, map] : root) {
        if (!filler.take(map_tag, attribute_cursor(map))) return false;
        for (auto& [tag, element] : map) {
            if (tag == attributes_key) continue;
            if (!filler.take(tag, attribute_cursor(element))) return false;
        }
    }
    return true;
}

bool read(const std::string& path, table_filler& filler)
{
    ptree document;
    try {
        boost::property_tree::read_xml(path, document, boost::property_tree::xml_parser::no_comments);
    } catch (const boost::property_tree::xml_parser_error&) {
        return false;
    }
    return !document.empty() && take_all(document.front().second, filler);
}

}  // namespace

const peer boost_ptree = {"boost_ptree", BOOST_LIB_VERSION, read, nullptr};

}  // namespace bench
