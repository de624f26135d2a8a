// The tables that a host fills by hand, and how: what the contenders share, so that only their parsers differ. The
// containers are those of the library's own tables.
#pragma once

#include <algorithm>
#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace bench {

using names = std::vector<std::string>;
using row = std::vector<std::string>;  // values in the order of the attribute names, empty for those left out

using simple_table = std::map<std::string, std::string>;
using vector_table = std::map<std::string, std::vector<std::string>>;

struct collection_table
{
    names schema;  // "name" comes first
    std::map<std::string, row> items;
};

struct vector_collection_table
{
    names schema;
    std::map<std::string, std::vector<row>> items;
};

struct host_tables
{
    std::map<std::string, simple_table> simple;
    std::map<std::string, vector_table> vector;
    std::map<std::string, collection_table> collection;
    std::map<std::string, vector_collection_table> vector_collection;
};

// A cursor stands on one of an element's attributes, in the order of the document, and has
//
//     bool at_end();
//     void next();
//     std::string_view name();
//     value();  // a std::string_view, or a std::string&& where the parser's own string can be moved
//
// The functions below answer false for what they refuse: a name that is there already, an attribute that the map's
// first element does not have, an element in the wrong place.

template <class cursor>
bool is_at_name(cursor& attributes)
{
    return !attributes.at_end() && attributes.name() == "name";
}

// Reads the attributes from the cursor on behind the values that the row has. Attributes mostly follow each other as in
// the schema, so that place is tried before any search.
template <class cursor>
bool read_row(cursor& attributes, names& schema, bool makes_schema, row& values)
{
    values.reserve(schema.size());
    for (; !attributes.at_end(); attributes.next()) {
        const std::string_view name = attributes.name();
        if (makes_schema) schema.emplace_back(name);
        std::size_t place = values.size();
        if (place == schema.size() || schema[place] != name) {
            place = static_cast<std::size_t>(std::find(schema.begin(), schema.end(), name) - schema.begin());
            if (place == schema.size()) return false;
        }
        if (place < values.size()) {
            values[place] = std::string(attributes.value());
        } else {
            values.resize(place);
            values.emplace_back(attributes.value());
        }
    }
    values.resize(schema.size());
    return true;
}

struct no_filler
{
    template <class cursor>
    bool take_item(cursor& /*attributes*/)
    {
        return false;
    }
    template <class cursor>
    bool take_arg(cursor& /*attributes*/)
    {
        return false;
    }
};

struct simple_filler
{
    template <class cursor>
    bool take_item(cursor& attributes)
    {
        if (!is_at_name(attributes)) return false;
        const auto [item, is_new] = table->try_emplace(std::string(attributes.value()));
        text = &item->second;
        return is_new;
    }
    template <class cursor>
    bool take_arg(cursor& attributes)
    {
        if (text == nullptr || !is_at_name(attributes)) return false;
        *text = std::string(attributes.value());
        return true;
    }

    simple_table* table;
    std::string* text = nullptr;
};

struct vector_filler
{
    template <class cursor>
    bool take_item(cursor& attributes)
    {
        if (!is_at_name(attributes)) return false;
        const auto [item, is_new] = table->try_emplace(std::string(attributes.value()));
        texts = &item->second;
        return is_new;
    }
    template <class cursor>
    bool take_arg(cursor& attributes)
    {
        if (texts == nullptr || !is_at_name(attributes)) return false;
        texts->emplace_back(attributes.value());
        return true;
    }

    vector_table* table;
    std::vector<std::string>* texts = nullptr;
};

struct collection_filler
{
    template <class cursor>
    bool take_item(cursor& attributes)
    {
        if (!is_at_name(attributes)) return false;
        const auto [item, is_new] = table->items.try_emplace(std::string(attributes.value()));
        if (!is_new) return false;
        const bool makes_schema = table->schema.empty();
        if (makes_schema) table->schema.emplace_back("name");
        item->second.reserve(table->schema.size());
        item->second.push_back(item->first);
        attributes.next();
        return read_row(attributes, table->schema, makes_schema, item->second);
    }
    template <class cursor>
    bool take_arg(cursor& /*attributes*/)
    {
        return false;
    }

    collection_table* table;
};

struct vector_collection_filler
{
    template <class cursor>
    bool take_item(cursor& attributes)
    {
        if (!is_at_name(attributes)) return false;
        const auto [item, is_new] = table->items.try_emplace(std::string(attributes.value()));
        rows = &item->second;
        return is_new;
    }
    template <class cursor>
    bool take_arg(cursor& attributes)
    {
        if (rows == nullptr || !is_at_name(attributes)) return false;
        return read_row(attributes, table->schema, table->schema.empty(), rows->emplace_back());
    }

    vector_collection_table* table;
    std::vector<row>* rows = nullptr;
};

// Fills tables from the elements of a file, given in the order of the document.
class table_filler
{
public:
    explicit table_filler(host_tables& tables) : m_tables(tables) {}

    template <class cursor>
    bool take(std::string_view tag, cursor attributes)
    {
        if (tag == "item") return std::visit([&](auto& map) { return map.take_item(attributes); }, m_map);
        if (tag == "arg") return std::visit([&](auto& map) { return map.take_arg(attributes); }, m_map);
        if (tag == "maps") return true;
        if (attributes.at_end()) return false;
        if (tag == "include") m_includes.emplace_back(attributes.value());
        return tag == "include" || open_map(tag, std::string(attributes.value()));
    }

    // The paths of the files to go on with, relative to the master file.
    const std::vector<std::string>& includes() const { return m_includes; }

private:
    bool open_map(std::string_view tag, std::string name)
    {
        if (tag == "map") return open<simple_filler>(m_tables.simple, std::move(name));
        if (tag == "vector_map") return open<vector_filler>(m_tables.vector, std::move(name));
        if (tag == "collection_map") return open<collection_filler>(m_tables.collection, std::move(name));
        if (tag != "vector_collection_map") return false;
        return open<vector_collection_filler>(m_tables.vector_collection, std::move(name));
    }

    template <class filler, class table>
    bool open(std::map<std::string, table>& tables, std::string name)
    {
        const auto [map, is_new] = tables.try_emplace(std::move(name));
        m_map = filler{&map->second};
        return is_new;
    }

    host_tables& m_tables;
    std::vector<std::string> m_includes;
    std::variant<no_filler, simple_filler, vector_filler, collection_filler, vector_collection_filler> m_map;
};

}  // namespace bench
