#include "data_mapper/map_collection.h"

#include <algorithm>
#include <list>
#include <set>
#include <tuple>
#include <utility>

#include "data_mapper/map_kind.h"
#include "data_mapper/map_stores.h"

namespace data_mapper4 {

namespace {

using node = xml_stream_parser::node;

// In wide characters. No system accepts a longer path.
constexpr std::size_t longest_path = 32767;

// The path up to its first zero, one UTF-16 unit for each wide character.
NUVEK_2_18::strings::ustring16 parser_path(const std::wstring& path)
{
    return {path.begin(), std::find(path.begin(), path.end(), L'\0')};
}

std::wstring wide(const ustring8& text)
{
    const NUVEK_2_18::strings::ustring16 units = NUVEK_2_18::strings::utf8_to_utf16(text);
    return {units.begin(), units.end()};
}

}  // namespace

// Reads one file and everything it includes:
//
//     file     = root (map | map-end | include)* root-end
//     root     = the first node: <maps> without attributes
//     map      = a node of one of the four kinds, with exactly one attribute, name="NAME"; a start node is followed by
//                the map's content, any other node is skipped
//     map-end  = a node of one of the four kinds without attributes, but not a start node
//     include  = a node <include file="PATH">
//     root-end = any further node <maps>; it has no attributes, and the document is complete
//
// The files being read, each waiting for the one that it includes, are a list and not nested calls: the input decides
// how deep includes go, and must not exhaust the host's stack.
class map_collection::file_loader
{
public:
    explicit file_loader(map_collection& maps) : m_maps(maps) {}

    void load(const std::wstring& path)
    {
        open(std::wstring(), path);
        while (!m_chain.empty()) {
            xml_stream_parser& parser = m_chain.back().parser;
            const bool goes_on = !parser.node_queue_empty() && take(parser.node_queue_pop(), parser);
            // An include has added its file to the chain; this file continues when that one is done.
            if (!goes_on) close();
        }
    }

private:
    // The state in which a file was entered, which is all that its includes depend on: the number of maps loaded, the
    // size of the base directory, whether the path begins with that, and the path, without the base directory if it
    // does.
    using entry = std::tuple<std::size_t, std::size_t, bool, std::wstring>;

    struct open_file
    {
        explicit open_file(const std::wstring& path) : parser(parser_path(path), xml_stream_parser::header_optional) {}
        std::set<entry>::iterator entered;
        xml_stream_parser parser;
    };

    // Ends a file with this code, and returns false. The line stays that of the last table load or opening.
    bool end(map_error_t::result_type type)
    {
        m_maps.m_error.type(type);
        return false;
    }

    // Adds a file to the chain and takes its root; if that fails, the result says why. The path is the base directory
    // followed by the rest. A hostile file may set a huge base directory and then name many includes, so what is too
    // long to be a path is neither joined nor converted.
    void open(const std::wstring& base_dir, const std::wstring& rest)
    {
        const bool is_cut = base_dir.size() + rest.size() > longest_path;
        std::wstring file(base_dir, 0, longest_path);  // not in place: the rest may be the last file's path
        file.append(rest, 0, longest_path - file.size());
        m_maps.m_file = std::move(file);
        if (m_maps.m_base_dir.empty()) m_maps.m_base_dir = rest.substr(0, rest.rfind(L'\\') + 1);
        m_maps.m_error = map_error_t();
        if (is_cut && m_maps.m_file.find(L'\0') == std::wstring::npos) {
            end(map_error_t::file_not_found);
            return;
        }
        const auto entered = m_entered.insert(entry_of(m_maps.m_file));
        if (!entered.second) {
            // The same file with nothing loaded since it was entered: it would include itself forever.
            end(map_error_t::invalid_format);
            return;
        }
        m_chain.emplace_back(m_maps.m_file);
        m_chain.back().entered = entered.first;
        if (!parse(m_chain.back().parser)) close();
    }

    entry entry_of(const std::wstring& path) const
    {
        const std::wstring& base_dir = m_maps.m_base_dir;
        const bool is_below_base = path.compare(0, base_dir.size(), base_dir) == 0;
        return {m_maps.m_maps.size(), base_dir.size(), is_below_base, path.substr(is_below_base ? base_dir.size() : 0)};
    }

    void close()
    {
        m_entered.erase(m_chain.back().entered);
        m_chain.pop_back();
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

    // Takes one node of a file. Returns false if the file ends with it.
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
        const bool is_sound = element.status == xml_stream_parser::no_error && find_kind(element.tag) != nullptr;
        return is_sound || end(map_error_t::invalid_format);
    }

    // The result of the included file is ignored: it may be missing or faulty, and this file goes on.
    bool take_include(const node& element)
    {
        const auto& attribute = element.attributes.front();
        if (attribute.first != "file") return end(map_error_t::invalid_format);
        open(m_maps.m_base_dir, wide(attribute.second));
        return true;
    }

    // The order of the checks decides the result: a duplicate name takes precedence over an unknown element, and is
    // reported even if the element has no content.
    bool take_map(const node& element, xml_stream_parser& parser)
    {
        const auto& attribute = element.attributes.front();
        const ustring8& map_name = attribute.second;
        if (attribute.first != "name" || map_name.empty()) return end(map_error_t::invalid_format);
        if (m_maps.is_loaded(map_name)) return end(map_error_t::duplicate_map);
        const map_kind* const kind = find_kind(element.tag);
        if (kind == nullptr) return end(map_error_t::invalid_format);
        if (element.status != xml_stream_parser::incomplete) return true;
        return stores::visit(m_maps, kind->type,
                             [&](auto& store) { return load_table(store, kind->type, map_name, parser); });
    }

    // Loads a table and, if that succeeds, registers and stores it under the name, which must be new.
    template <class table>
    bool load_table(std::map<ustring8, table>& store, map_type type, const ustring8& map_name,
                    xml_stream_parser& parser)
    {
        table loaded;
        m_maps.m_error = loaded.load(map_name, parser);
        if (m_maps.m_error.type() != map_error_t::no_error) return false;
        // The store's entry is made before the registry's and moved in after it: if memory runs out in between, the
        // registry still names only what is stored.
        std::map<ustring8, table> stored;
        stored.emplace(map_name, loaded);
        const bool is_registered = m_maps.m_maps.emplace(map_name, type).second;
        if (is_registered) store.merge(stored);
        return (is_registered && stored.empty()) || end(map_error_t::memory_error);
    }

    map_collection& m_maps;
    std::list<open_file> m_chain;  // the files being read, each included by the one before it
    std::set<entry> m_entered;     // one for each of them
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
