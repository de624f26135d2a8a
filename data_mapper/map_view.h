// map_view: reads a loaded map in place. Nothing is copied or allocated, and nothing throws. (The one exception is that
// view() takes a ustring8, so a map name given as a long literal is converted first, which allocates.)
//
//     if (const auto units = maps.view("units")) {
//         std::cout << units.text("km").value_or("?") << '\n';
//         for (const auto& [name, item] : units) std::cout << name << ": " << item.text() << '\n';
//     }
//
// Everything that a view returns is a view too: valid until the collection is loaded into, assigned to or destroyed,
// and until a host that derives from a table asks it for iterators. Any number of threads may use views of one
// collection at the same time.
//
// Items, texts, rows and attributes come in the order of the document. A map with attributes has a list of their names,
// keys(); each item or row has a value for every one of them, which is empty if it was left out. A view answers for its
// kind of map only: for other kinds a lookup finds nothing, and a text or list is empty.
//
// The ranges work with range-for, with algorithms that read a range once and, from C++20 on, with std::ranges. Their
// elements are made when they are read, so an iterator has no operator->.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "data_mapper/item_view.h"

namespace data_mapper4 {

class map_collection;

// The items of a map.
class item_cursor
{
public:
    item_cursor() = default;
    item_cursor(const char* record, map_type kind, const std::vector<ustring8>* names)
        : m_record(record), m_kind(kind), m_names(names)
    {
    }

    std::pair<std::string_view, item_view> read() const
    {
        const stored_item item(m_record);
        return {item.key(), item_view(item, m_kind, m_names)};
    }
    void next() { m_record = stored_item(m_record).end(); }
    bool operator==(const item_cursor& other) const { return m_record == other.m_record; }

private:
    const char* m_record = nullptr;
    map_type m_kind = MT_UNKNOWN;
    const std::vector<ustring8>* m_names = nullptr;
};

// A map as a range of its items' names and views; or none.
class map_view
{
public:
    using iterator = view_range<item_cursor>::iterator;
    using const_iterator = iterator;
    using value_type = iterator::value_type;

    map_view() = default;
    map_view(const item_store& items, map_type kind, const std::vector<ustring8>* names)
        : m_items(&items), m_kind(kind), m_names(names)
    {
    }

    explicit operator bool() const { return m_items != nullptr; }

    // MT_UNKNOWN if there is no map.
    map_type kind() const { return m_kind; }

    // The number of items.
    DATA_MAPPER4_API std::size_t size() const noexcept;
    bool empty() const { return size() == 0; }

    iterator begin() const { return iterator({records().data(), m_kind, m_names}); }
    iterator end() const { return iterator({records().data() + records().size(), m_kind, m_names}); }

    // The attribute names of a map with attributes, "name" first.
    key_list keys() const
    {
        if (m_names == nullptr) return {};
        return {key_cursor(m_names->data()), key_cursor(m_names->data() + m_names->size())};
    }

    // Finds an item in constant time, or logarithmic time if the names of items were made to collide.
    DATA_MAPPER4_API std::optional<item_view> find(std::string_view item) const noexcept;
    bool contains(std::string_view item) const { return find(item).has_value(); }

    // The text of a simple map's item, or the value of an attribute of a collection map's item; none if there is no
    // such item, or no such name in keys(). The latter takes time linear in keys().
    std::optional<std::string_view> text(std::string_view item) const
    {
        const std::optional<item_view> found = m_kind == MT_SIMPLE ? find(item) : std::nullopt;
        return found ? std::optional<std::string_view>(found->text()) : std::nullopt;
    }
    std::optional<std::string_view> attribute(std::string_view item, std::string_view name) const
    {
        return attributes(item).value(name);
    }

    // The texts, attributes or rows of an item; empty if there is no such item.
    text_list texts(std::string_view item) const
    {
        const std::optional<item_view> found = find(item);
        return found ? found->texts() : text_list();
    }
    attribute_list attributes(std::string_view item) const
    {
        const std::optional<item_view> found = find(item);
        return found ? found->attributes() : attribute_list();
    }
    row_list rows(std::string_view item) const
    {
        const std::optional<item_view> found = find(item);
        return found ? found->rows() : row_list();
    }

private:
    DATA_MAPPER4_API std::string_view records() const noexcept;

    const item_store* m_items = nullptr;
    map_type m_kind = MT_UNKNOWN;
    const std::vector<ustring8>* m_names = nullptr;
};

// The maps of a collection, in the order of ustring8.
class map_cursor
{
public:
    using registry = std::map<ustring8, map_type>;

    map_cursor() = default;
    map_cursor(const map_collection& maps, registry::const_iterator at) : m_maps(&maps), m_at(at) {}

    DATA_MAPPER4_API std::pair<std::string_view, map_view> read() const noexcept;
    void next() { ++m_at; }
    bool operator==(const map_cursor& other) const { return m_at == other.m_at; }

private:
    const map_collection* m_maps = nullptr;
    registry::const_iterator m_at;
};

using map_list = view_range<map_cursor>;

}  // namespace data_mapper4
