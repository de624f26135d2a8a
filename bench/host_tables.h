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

using row = std::vector<std::string>;  // values in the order of the schema, empty for those left out

// What an item of a kind of map holds.
template <map_type kind>
using content = std::tuple_element_t<kind, std::tuple<std::string, row, std::vector<std::string>, std::vector<row>>>;

template <map_type kind>
struct host_table
{
    std::vector<std::string> schema;  // "name" comes first; empty in maps without rows
    std::map<std::string, content<kind>> items;
};

template <map_type kind>
using tables_by_name = std::map<std::string, host_table<kind>>;

using host_tables = std::tuple<tables_by_name<MT_SIMPLE>, tables_by_name<MT_COLLECTION>, tables_by_name<MT_VECTOR>,
                               tables_by_name<MT_VECTOR_COLLECTION>>;

// Fills one map. `attributes` is a function that calls another one with the name and value of each attribute, in the
// order of the document, until that returns false. A value is a std::string_view, or a std::string&& if the parser's
// own string can be moved.
//
// Functions return false for what a host refuses: a duplicate name, an attribute that the map's first element does not
// have, an element in the wrong place.
template <map_type kind>
class open_map
{
public:
    explicit open_map(host_table<kind>* table = nullptr) : m_table(table) {}

    template <class attribute_list>
    bool take_item(const attribute_list& attributes)
    {
        m_item = nullptr;
        if (m_table == nullptr) return false;
        attributes([&](std::string_view name, auto&& value) {
            if (kind == MT_COLLECTION && m_item != nullptr) return add(name, std::forward<decltype(value)>(value));
            return name == "name" && add_item(std::string(std::forward<decltype(value)>(value)));
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
            if constexpr (kind == MT_SIMPLE) *m_item = std::string(std::forward<decltype(value)>(value));
            if constexpr (kind == MT_VECTOR) m_item->emplace_back(std::forward<decltype(value)>(value));
            return false;
        });
        if (kind == MT_VECTOR_COLLECTION && m_item != nullptr) m_row->resize(m_table->schema.size());
        return m_item != nullptr;
    }

private:
    // Returns whether the element's attributes after the first matter.
    bool add_item(std::string name)
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

    void begin_row(row& values)
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
            (*m_row)[place] = std::string(std::forward<value_type>(value));
        } else {
            m_row->resize(place);
            m_row->emplace_back(std::forward<value_type>(value));
        }
        return true;
    }

    host_table<kind>* m_table;
    content<kind>* m_item = nullptr;
    row* m_row = nullptr;  // only in maps with rows
    bool m_makes_schema = false;
};

// Fills tables from the elements of a file, which are passed in the order of the document.
class table_filler
{
public:
    explicit table_filler(host_tables& tables) : m_tables(tables) {}

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
                m_is_sound = open(tag, std::string(std::forward<decltype(value)>(value))) && m_is_sound;
                return false;
            });
        }
    }

    // Whether nothing was refused.
    bool is_sound() const { return m_is_sound; }

    // The paths of the files to read next, relative to the master file.
    const std::vector<std::string>& includes() const { return m_includes; }

private:
    bool open(std::string_view tag, std::string name)
    {
        if (tag != "include") {
            return open_as<MT_SIMPLE>(tag, name) || open_as<MT_COLLECTION>(tag, name) ||
                   open_as<MT_VECTOR>(tag, name) || open_as<MT_VECTOR_COLLECTION>(tag, name);
        }
        m_includes.push_back(std::move(name));
        return true;
    }

    template <map_type kind>
    bool open_as(std::string_view tag, std::string& name)
    {
        if (tag != map_tags[kind]) return false;
        const auto [map, is_new] = std::get<kind>(m_tables).try_emplace(std::move(name));
        m_map = open_map<kind>(&map->second);
        return is_new;
    }

    host_tables& m_tables;
    std::vector<std::string> m_includes;
    std::variant<open_map<MT_SIMPLE>, open_map<MT_COLLECTION>, open_map<MT_VECTOR>, open_map<MT_VECTOR_COLLECTION>>
        m_map;
    bool m_is_sound = true;
};

}  // namespace bench
