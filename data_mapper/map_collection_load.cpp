#include "data_mapper/map_collection.h"

#include <list>
#include <set>
#include <tuple>

#include "data_mapper/map_kind.h"

namespace data_mapper4 {

namespace {

using node = xml_stream_parser::node;

// The units of the path up to its first zero, one for each wide character.
NUVEK_2_18::strings::ustring16 parser_path(const std::wstring& path)
{
    NUVEK_2_18::strings::ustring16 units;
    for (const wchar_t character : path) {
        if (character == 0) break;
        units.push_back(static_cast<char16_t>(character));
    }
    return units;
}

std::wstring wide(const ustring8& text)
{
    const NUVEK_2_18::strings::ustring16 units = NUVEK_2_18::strings::utf8_to_utf16(text);
    return {units.begin(), units.end()};
}

}  // namespace

// Reads one file and all that it includes, following
//
//     file     = root (map | map-end | include)* root-end
//     root     = the first node: <maps> without attributes
//     map      = a node of one of the four kinds with the one attribute name="NAME"; a start node is followed by the
//                map's content, any other node is passed over
//     map-end  = a node of one of the four kinds without attributes, not a start node
//     include  = a node <include file="PATH">
//     root-end = any further node <maps>; it has no attributes, and the document is complete
//
// The files being read, each waiting for the one that it includes, are a list and not nested calls: how deep includes
// go is the input's choice, and must not be what the host's stack is measured by.
class map_collection::file_loader
{
public:
    explicit file_loader(map_collection& maps) : m_maps(maps) {}

    void load(const std::wstring& path)
    {
        open(path);
        while (!m_chain.empty()) {
            xml_stream_parser& parser = m_chain.back().parser;
            const bool goes_on = !parser.node_queue_empty() && take(parser.node_queue_pop(), parser);
            // An include has put its file behind this one, which then goes on when that one is done.
            if (!goes_on) close();
        }
    }

private:
    // A file at the moment it is entered: its path, the base directory and the number of maps loaded.
    using entry = std::tuple<std::wstring, std::wstring, std::size_t>;

    struct open_file
    {
        explicit open_file(const std::wstring& path) : parser(parser_path(path), xml_stream_parser::header_optional) {}
        std::set<entry>::iterator entered;
        xml_stream_parser parser;
    };

    // Ends a file with this result, which keeps the line that the last table load or opening left.
    bool end(map_error_t::result_type type)
    {
        m_maps.m_error.type(type);
        return false;
    }

    // Puts a file at the end of the chain, its root taken. Otherwise the result tells why it is not there.
    void open(const std::wstring& path)
    {
        m_maps.m_file = path;
        find_base_dir();
        const auto entered = m_entered.emplace(m_maps.m_file, m_maps.m_base_dir, m_maps.m_maps.size());
        if (!entered.second) {
            // The same file, with nothing loaded since it was entered: it could only repeat itself for ever.
            m_maps.m_error = map_error_t();
            end(map_error_t::invalid_format);
            return;
        }
        m_chain.emplace_back(m_maps.m_file);
        m_chain.back().entered = entered.first;
        if (!parse(m_chain.back().parser)) close();
    }

    void close()
    {
        m_entered.erase(m_chain.back().entered);
        m_chain.pop_back();
    }

    void find_base_dir()
    {
        if (!m_maps.m_base_dir.empty()) return;
        m_maps.m_base_dir = m_maps.m_file.substr(0, m_maps.m_file.rfind(L'\\') + 1);
    }

    bool parse(xml_stream_parser& parser)
    {
        m_maps.m_error = m_maps.convert_error(parser.error());
        if (m_maps.m_error.type() != map_error_t::no_error) return false;
        m_maps.m_error = m_maps.convert_error(parser.parse());
        if (m_maps.m_error.type() != map_error_t::no_error) return false;
        const node root = parser.node_queue_pop();
        const bool is_root = root.tag == "maps" && root.attributes.empty();
        return is_root || end(map_error_t::invalid_format);
    }

    // Takes one node of a file. False: the file ends with it.
    bool take(const node& element, xml_stream_parser& parser)
    {
        if (element.tag == "maps") return take_root_end(element, parser);
        if (element.attributes.empty()) return take_map_end(element);
        if (element.attributes.size() > 1) return end(map_error_t::invalid_format);
        if (element.tag == "include") return take_include(element);
        return take_map(element, parser);
    }

    bool take_root_end(const node& element, xml_stream_parser& parser)
    {
        const bool is_sound = parser.error() == xml_stream_parser::end_of_file && element.attributes.empty();
        return end(is_sound ? map_error_t::no_error : map_error_t::invalid_format);
    }

    bool take_map_end(const node& element)
    {
        const bool is_sound = element.status == xml_stream_parser::no_error && map_kind::of_tag(element.tag) != nullptr;
        return is_sound || end(map_error_t::invalid_format);
    }

    // What the included file comes to is not looked at: it may be missing or faulty, and this file goes on.
    bool take_include(const node& element)
    {
        const auto& attribute = element.attributes.front();
        if (attribute.first != "file") return end(map_error_t::invalid_format);
        open(m_maps.m_base_dir + wide(attribute.second));
        return true;
    }

    // The order of the checks is part of the results: a name that is loaded is reported before an element that is not
    // known or has no content.
    bool take_map(const node& element, xml_stream_parser& parser)
    {
        const auto& attribute = element.attributes.front();
        const ustring8& map_name = attribute.second;
        if (attribute.first != "name" || map_name.empty()) return end(map_error_t::invalid_format);
        if (m_maps.is_loaded(map_name)) return end(map_error_t::duplicate_map);
        const map_kind* const kind = map_kind::of_tag(element.tag);
        if (kind == nullptr) return end(map_error_t::invalid_format);
        if (element.status != xml_stream_parser::incomplete) return true;
        return kind->load(m_maps, map_name, parser);
    }

    map_collection& m_maps;
    std::list<open_file> m_chain;  // the files being read, each included by the one before it
    std::set<entry> m_entered;     // what they were entered with
};

map_error_t map_collection::load(const std::wstring& path)
{
    init(path);
    return m_error;
}

void map_collection::init(const std::wstring& path)
{
    file_loader(*this).load(path);
}

}  // namespace data_mapper4
