// A model of a load, written from the headers and docs/format.md and as simple as possible: a file's nodes come from
// expat, an include is a recursive call, and every kind of table is rows of named texts.
#pragma once

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "data_mapper/map_collection.h"
#include "expat_nodes.h"

namespace load_model {

using namespace data_mapper4;
using expat_nodes::node;
using row = std::map<std::string, std::string>;

struct table
{
    map_type kind;
    std::vector<std::string> schema = {};                // attribute names
    std::map<std::string, std::vector<row>> items = {};  // without a schema, a row's text is its "name"
};

// A file's nodes, the next one first.
struct queue
{
    const std::vector<node>& nodes;
    std::size_t next = 0;

    bool is_empty() const { return next == nodes.size(); }
    bool waits(const char* tag) const { return !is_empty() && nodes[next].tag == tag; }
    const node& take() { return nodes[next++]; }
};

class collection
{
public:
    using files = std::map<std::string, expat_nodes::reading>;  // by path, with slashes and without ".."

    // The most includes that are followed; with more, the result means nothing.
    static constexpr std::size_t most_files = 500;

    explicit collection(const files& all) : m_files(&all) {}

    std::map<std::string, table> maps;
    map_error_t::result_type result = map_error_t::no_error;
    unsigned long line = 0;
    std::size_t files_read = 0;

    void load(const std::string& path)
    {
        if (m_base.empty()) m_base = path.substr(0, path.rfind('\\') + 1);
        line = 0;
        const auto entered = m_entered.emplace(path, m_base, maps.size());
        result = entered.second ? map_error_t::no_error : map_error_t::invalid_format;
        if (!entered.second || ++files_read > most_files) return;
        std::string found = path;
        std::replace(found.begin(), found.end(), '\\', '/');
        const auto file = m_files->find(std::filesystem::path(found).lexically_normal().string());
        if (file == m_files->end())
            fail(map_error_t::file_not_found);
        else
            read(file->second);
        m_entered.erase(entered.first);
    }

private:
    // Every fault ends the file that it is in.
    bool fail(map_error_t::result_type code)
    {
        result = code;
        return false;
    }

    bool read(const expat_nodes::reading& document)
    {
        if (!document.is_accepted() && !document.is_incomplete()) return fail(map_error_t::invalid_format);
        queue waiting{document.nodes};
        const node& root = waiting.take();
        if (root.tag != "maps" || !root.attributes.empty()) return fail(map_error_t::invalid_format);
        while (!waiting.is_empty() && !waiting.waits("maps")) {
            if (!take(waiting.take(), waiting)) return false;
        }
        if (waiting.is_empty()) return true;
        const bool is_sound = document.is_accepted() && waiting.take().attributes.empty();
        return fail(is_sound ? map_error_t::no_error : map_error_t::invalid_format);
    }

    // A map element, the end of one, or an include.
    bool take(const node& element, queue& waiting)
    {
        constexpr const char* tags[] = {"map", "collection_map", "vector_map", "vector_collection_map"};
        const auto kind = static_cast<map_type>(std::find(std::begin(tags), std::end(tags), element.tag) - tags);
        const bool is_start = element.status != xml_stream_parser::no_error;
        const bool is_include = element.tag == "include";
        if (element.attributes.empty() && !is_start && kind != MT_UNKNOWN) return true;
        const char* const attribute = is_include ? "file" : "name";
        if (element.attributes.size() != 1 || element.attributes.front().first != attribute)
            return fail(map_error_t::invalid_format);
        const std::string& value = element.attributes.front().second;
        if (is_include) {
            load(m_base + value);
            return true;
        }
        if (value.empty()) return fail(map_error_t::invalid_format);
        if (maps.count(value) != 0) return fail(map_error_t::duplicate_map);
        if (kind == MT_UNKNOWN) return fail(map_error_t::invalid_format);
        if (!is_start) return true;
        table loaded{kind};
        result = map_error_t::no_error;
        line = 0;
        while (!waiting.is_empty()) {
            if (kind == MT_VECTOR_COLLECTION) line = waiting.nodes[waiting.next].line;
            if (!waiting.waits("item") || !take_item(loaded, waiting)) break;
        }
        if (result == map_error_t::no_error) maps.emplace(value, loaded);
        return result == map_error_t::no_error;
    }

    static bool has_form(const node& element, bool may_have_more)
    {
        return !element.attributes.empty() && element.attributes.front().first == "name" && element.data.empty() &&
               (may_have_more || element.attributes.size() == 1);
    }

    // A faulty arg ends a simple map, makes a vector map fail, and drops the item of a vector collection map.
    bool take_item(table& to, queue& waiting)
    {
        const bool is_row = to.kind == MT_COLLECTION;
        const node& item = waiting.take();
        line = item.line;
        if (!has_form(item, is_row)) return fail(map_error_t::invalid_format);
        const std::string& key = item.attributes.front().second;
        if (key.empty() || (!is_row && waiting.is_empty())) return fail(map_error_t::invalid_format);
        if (to.items.count(key) != 0) return fail(map_error_t::duplicate_item);
        std::vector<row> rows;
        if (is_row && !take_row(item, to, rows)) return false;
        bool is_sound = true;
        while (is_sound && !is_row && waiting.waits("arg") && (to.kind != MT_SIMPLE || rows.empty())) {
            is_sound = take_arg(waiting.take(), to, rows);
        }
        if (result == map_error_t::no_error || to.kind == MT_VECTOR) to.items.emplace(key, rows);
        return is_sound || to.kind != MT_SIMPLE;
    }

    bool take_arg(const node& arg, table& to, std::vector<row>& rows)
    {
        if (to.kind != MT_SIMPLE) line = arg.line;
        if (!has_form(arg, to.kind == MT_VECTOR_COLLECTION)) return fail(map_error_t::invalid_format);
        const auto& name = arg.attributes.front();
        if (name.second.empty() && to.kind != MT_SIMPLE) return fail(map_error_t::invalid_format);
        if (to.kind == MT_VECTOR_COLLECTION) return take_row(arg, to, rows);
        rows.push_back({name});
        return true;
    }

    // The first row names the attributes. A sound row clears the fault.
    bool take_row(const node& element, table& to, std::vector<row>& rows)
    {
        line = 0;
        result = map_error_t::no_error;
        if (to.schema.empty()) {
            for (const auto& attribute : element.attributes) to.schema.push_back(attribute.first);
        }
        row values(element.attributes.begin(), element.attributes.end());
        for (const std::string& name : to.schema) values.emplace(name, "");
        if (values.size() != to.schema.size()) return fail(map_error_t::collection_error);
        rows.push_back(values);
        return true;
    }

    const files* m_files;
    std::string m_base;
    std::set<std::tuple<std::string, std::string, std::size_t>> m_entered;
};

}  // namespace load_model
