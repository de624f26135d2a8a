#include "data_mapper/map_collection.h"

#include <algorithm>
#include <list>
#include <memory>
#include <set>
#include <tuple>
#include <utility>

#include "data_mapper/load_listener.h"
#include "data_mapper/map_kind.h"
#include "data_mapper/map_stores.h"
#include "platform/parser_elements.h"
#include "platform/xml_element_queue.h"

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
    // The listener may be null.
    file_loader(map_collection& maps, load_listener* listener) : m_maps(maps), m_listener(listener) {}

    void load(const std::wstring& path)
    {
        open(std::wstring(), path, 0);
        while (!m_chain.empty() && !m_is_ended) {
            open_file& file = m_chain.back();
            file.position = elements_of(*file.parser).position();
            const bool goes_on = !file.parser->node_queue_empty() && take(file.parser->node_queue_pop(), file);
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
        std::set<entry>::iterator entered;
        std::unique_ptr<xml_stream_parser> parser;
        std::size_t position = 0;  // of the element being taken
    };

    // Ends a file with this code, and returns false. The line stays that of the last table load or opening.
    bool end(map_error_t::result_type type)
    {
        m_maps.m_error.type(type);
        return false;
    }

    // Adds a file to the chain and takes its root; if that fails, the result says why. The path is the base directory
    // followed by the rest. A hostile file may set a huge base directory and then name many includes, so what is too
    // long to be a path is neither joined nor converted. `include` is the position of the element that includes the file.
    void open(const std::wstring& base_dir, const std::wstring& rest, std::size_t include)
    {
        const bool is_cut = base_dir.size() + rest.size() > longest_path;
        std::wstring path(base_dir, 0, longest_path);  // not in place: the rest may be the last file's path
        path.append(rest, 0, longest_path - path.size());
        m_maps.m_file = std::move(path);
        if (m_maps.m_base_dir.empty()) m_maps.m_base_dir = rest.substr(0, rest.rfind(L'\\') + 1);
        m_maps.m_error = map_error_t();
        m_is_ended = m_listener != nullptr && !m_listener->on_open(m_maps.m_file, include);
        if (m_is_ended) return;
        if (is_cut && m_maps.m_file.find(L'\0') == std::wstring::npos) {
            refuse(map_error_t::file_not_found);
            return;
        }
        const auto entered = m_entered.insert(entry_of(m_maps.m_file));
        if (!entered.second) {
            // The same file with nothing loaded since it was entered: it would include itself forever.
            refuse(map_error_t::invalid_format);
            return;
        }
        open_file& file = m_chain.emplace_back();
        file.entered = entered.first;
        file.parser = make_parser(m_maps.m_file);
        if (!parse(*file.parser)) close();
    }

    std::unique_ptr<xml_stream_parser> make_parser(const std::wstring& path)
    {
        if (m_listener != nullptr) return m_listener->make_parser(path);
        return std::make_unique<xml_stream_parser>(parser_path(path), xml_stream_parser::header_optional);
    }

    // Ends a file that was not read.
    void refuse(map_error_t::result_type type)
    {
        end(type);
        if (m_listener != nullptr) m_listener->on_close(m_maps.m_error, 0);
    }

    entry entry_of(const std::wstring& path) const
    {
        const std::wstring& base_dir = m_maps.m_base_dir;
        const bool is_below_base = path.compare(0, base_dir.size(), base_dir) == 0;
        return {m_maps.m_maps.size(), base_dir.size(), is_below_base, path.substr(is_below_base ? base_dir.size() : 0)};
    }

    void close()
    {
        const std::size_t end = elements_of(*m_chain.back().parser).position();
        if (m_listener != nullptr) m_listener->on_close(m_maps.m_error, end);
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
    bool take(const node& element, open_file& file)
    {
        if (element.tag == "maps") return take_root_end(element, *file.parser);
        if (element.attributes.empty()) return take_map_end(element);
        if (element.attributes.size() > 1) return end(map_error_t::invalid_format);
        if (element.tag == "include") return take_include(element, file);
        return take_map(element, file);
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
    bool take_include(const node& element, const open_file& file)
    {
        const auto& attribute = element.attributes.front();
        if (attribute.first != "file") return end(map_error_t::invalid_format);
        open(m_maps.m_base_dir, wide(attribute.second), file.position);
        return true;
    }

    // The order of the checks decides the result: a duplicate name takes precedence over an unknown element, and is
    // reported even if the element has no content.
    bool take_map(const node& element, open_file& file)
    {
        const auto& attribute = element.attributes.front();
        const ustring8& map_name = attribute.second;
        if (attribute.first != "name" || map_name.empty()) return end(map_error_t::invalid_format);
        if (m_maps.is_loaded(map_name)) return end(map_error_t::duplicate_map);
        const map_kind* const kind = find_kind(element.tag);
        if (kind == nullptr) return end(map_error_t::invalid_format);
        if (element.status != xml_stream_parser::incomplete) return true;
        return stores::visit(m_maps, kind->type,
                             [&](auto& store) { return load_table(store, kind->type, map_name, file); });
    }

    // Loads a table and, if that succeeds, registers and stores it under the name, which must be new.
    template <class table>
    bool load_table(std::map<ustring8, table>& store, map_type type, const ustring8& map_name, open_file& file)
    {
        table loaded;
        m_maps.m_error = loaded.load(map_name, *file.parser);
        if (m_maps.m_error.type() != map_error_t::no_error) return false;
        // The store's entry is made before the registry's and moved in after it: if memory runs out in between, the
        // registry still names only what is stored.
        std::map<ustring8, table> stored;
        stored.emplace(map_name, loaded);
        const bool is_registered = m_maps.m_maps.emplace(map_name, type).second;
        if (is_registered) store.merge(stored);
        if (!is_registered || !stored.empty()) return end(map_error_t::memory_error);
        if (m_listener != nullptr) m_listener->on_map(file.position, map_name);
        return true;
    }

    map_collection& m_maps;
    load_listener* m_listener;
    bool m_is_ended = false;       // by the listener
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
    file_loader(*this, nullptr).load(path);
}

void load_followed(map_collection& maps, const std::wstring& path, load_listener& listener)
{
    map_collection::file_loader(maps, &listener).load(path);
}

}  // namespace data_mapper4
