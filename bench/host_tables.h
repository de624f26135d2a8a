// The tables that a host fills by hand, and how it fills them. All contenders share this, so that only their parsers
// differ. The containers are those of the library's own tables.
#pragma once

#include <algorithm>
#include <string_view>
#include <tuple>
#include <variant>

#include "documents.h"

namespace bench {

using namespace data_mapper4;

// Text is std::string, or std::string_view for tables that point into a document.
template <class text>
using row = std::vector<text>;  // values in the order of the schema, empty for those left out

// What an item of a kind of map holds.
template <map_type kind, class text>
using content = std::tuple_element_t<kind, std::tuple<text, row<text>, std::vector<text>, std::vector<row<text>>>>;

template <map_type kind, class text>
struct host_table
{
    std::vector<text> schema;  // "name" comes first; empty in maps without rows
    std::map<text, content<kind, text>> items;
};

template <map_type kind, class text>
using tables_by_name = std::map<text, host_table<kind, text>>;

template <class text>
using basic_tables = std::tuple<tables_by_name<MT_SIMPLE, text>, tables_by_name<MT_COLLECTION, text>,
                                tables_by_name<MT_VECTOR, text>, tables_by_name<MT_VECTOR_COLLECTION, text>>;
using host_tables = basic_tables<std::string>;

// Fills one map. `attributes` is a function that calls another one with the name and value of each attribute, in the
// order of the document, until that returns false. A value is a std::string_view, or a std::string&& if the parser's
// own string can be moved.
//
// Functions return false for what a host refuses: a duplicate name, an attribute that the map's first element does not
// have, an element in the wrong place.
template <map_type kind, class text>
class open_map
{
public:
    explicit open_map(host_table<kind, text>* table = nullptr) : m_table(table) {}

    template <class attribute_list>
    bool take_item(const attribute_list& attributes)
    {
        m_item = nullptr;
        if (m_table == nullptr) return false;
        attributes([&](std::string_view name, auto&& value) {
            if (kind == MT_COLLECTION && m_item != nullptr) return add(name, std::forward<decltype(value)>(value));
            return name == "name" && add_item(text(std::forward<decltype(value)>(value)));
        });
        if (kind == MT_COLLECTION && m_item != nullptr) m_row->resize(m_table->schema.size());
        return m_item != nullptr;
    }

    template <class attribute_list>
    bool take_arg(const attribute_list& attributes)
    {
        if (m_item == nullptr || kind == MT_COLLECTION) return false;
        if constexpr (kind == MT_VECTOR_COLLECTION) begin_row(m_item->emplace_back());
        attributes([&](std::string_view name, auto&& value) {
            if constexpr (kind == MT_VECTOR_COLLECTION) return add(name, std::forward<decltype(value)>(value));
            if (name != "name") return refuse();
            if constexpr (kind == MT_SIMPLE) *m_item = text(std::forward<decltype(value)>(value));
            if constexpr (kind == MT_VECTOR) m_item->emplace_back(std::forward<decltype(value)>(value));
            return false;
        });
        if (kind == MT_VECTOR_COLLECTION && m_item != nullptr) m_row->resize(m_table->schema.size());
        return m_item != nullptr;
    }

private:
    // Returns whether the element's attributes after the first matter.
    bool add_item(text name)
    {
        const auto [item, is_new] = m_table->items.try_emplace(std::move(name));
        if (!is_new) return false;
        m_item = &item->second;
        if constexpr (kind == MT_COLLECTION) {
            begin_row(item->second);
            if (m_makes_schema) m_table->schema.emplace_back("name");
            m_row->push_back(item->first);
        }
        return kind == MT_COLLECTION;
    }

    void begin_row(row<text>& values)
    {
        m_row = &values;
        m_makes_schema = m_table->schema.empty();
        m_row->reserve(m_table->schema.size());
    }

    bool refuse()
    {
        m_item = nullptr;
        return false;
    }

    // Adds a value to the row. Most attributes are in the order of the schema, so the next place is tried before
    // searching.
    template <class value_type>
    bool add(std::string_view name, value_type&& value)
    {
        auto& schema = m_table->schema;
        std::size_t place = m_row->size();
        if (place == 0 && name != "name") return refuse();
        if (m_makes_schema) schema.emplace_back(name);
        if (place == schema.size() || schema[place] != name) {
            place = static_cast<std::size_t>(std::find(schema.begin(), schema.end(), name) - schema.begin());
            if (place == schema.size()) return refuse();
        }
        if (place < m_row->size()) {
            (*m_row)[place] = text(std::forward<value_type>(value));
        } else {
            m_row->resize(place);
            m_row->emplace_back(std::forward<value_type>(value));
        }
        return true;
    }

    host_table<kind, text>* m_table;
    content<kind, text>* m_item = nullptr;
    row<text>* m_row = nullptr;  // only in maps with rows
    bool m_makes_schema = false;
};

// Fills tables from the elements of a file, which are passed in the order of the document.
template <class text>
class basic_filler
{
public:
    explicit basic_filler(basic_tables<text>& tables) : m_tables(tables) {}

    // Flattened, so that no peer is slower than with a loop written for it alone.
    template <class attribute_list>
    [[gnu::flatten]] void take(std::string_view tag, const attribute_list& attributes)
    {
        const bool is_item = tag == "item";
        if (is_item || tag == "arg") {
            const auto take_it = [&](auto& map) {
                return is_item ? map.take_item(attributes) : map.take_arg(attributes);
            };
            m_is_sound = std::visit(take_it, m_map) && m_is_sound;
        } else if (tag != "maps") {
            attributes([&](std::string_view, auto&& value) {
                m_is_sound = open(tag, text(std::forward<decltype(value)>(value))) && m_is_sound;
                return false;
            });
        }
    }

    // Whether nothing was refused.
    bool is_sound() const { return m_is_sound; }

    // The paths of the files to read next, relative to the master file.
    const std::vector<text>& includes() const { return m_includes; }

private:
    bool open(std::string_view tag, text name)
    {
        if (tag != "include") {
            return open_as<MT_SIMPLE>(tag, name) || open_as<MT_COLLECTION>(tag, name) ||
                   open_as<MT_VECTOR>(tag, name) || open_as<MT_VECTOR_COLLECTION>(tag, name);
        }
        m_includes.push_back(std::move(name));
        return true;
    }

    template <map_type kind>
    bool open_as(std::string_view tag, text& name)
    {
        if (tag != map_tags[kind]) return false;
        const auto [map, is_new] = std::get<kind>(m_tables).try_emplace(std::move(name));
        m_map = open_map<kind, text>(&map->second);
        return is_new;
    }

    basic_tables<text>& m_tables;
    std::vector<text> m_includes;
    std::variant<open_map<MT_SIMPLE, text>, open_map<MT_COLLECTION, text>, open_map<MT_VECTOR, text>,
                 open_map<MT_VECTOR_COLLECTION, text>>
        m_map;
    bool m_is_sound = true;
};

using table_filler = basic_filler<std::string>;

}  // namespace bench
