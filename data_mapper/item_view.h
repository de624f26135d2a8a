// item_view: reads an item of a loaded map in place. map_view.h has the rules of all views.
#pragma once

#include <cstddef>
#include <iterator>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "data_mapper/item_store.h"
#include "data_mapper/map_error_t.h"

namespace data_mapper4 {

// A range of what a cursor reads. A cursor has is_end(), read(), next() and ==; its elements are values.
template <class cursor>
class view_range
{
public:
    class iterator
    {
    public:
        using iterator_category = std::input_iterator_tag;  // before C++20, stronger ones had to return references
        using iterator_concept = std::forward_iterator_tag;
        using value_type = decltype(std::declval<const cursor&>().read());
        using difference_type = std::ptrdiff_t;
        using pointer = void;
        using reference = value_type;

        iterator() = default;
        explicit iterator(const cursor& at) : m_at(at) {}

        value_type operator*() const { return m_at.read(); }
        iterator& operator++()
        {
            m_at.next();
            return *this;
        }
        iterator operator++(int)
        {
            iterator before = *this;
            m_at.next();
            return before;
        }
        friend bool operator==(const iterator& a, const iterator& b) { return a.m_at == b.m_at; }
        friend bool operator!=(const iterator& a, const iterator& b) { return !(a.m_at == b.m_at); }

    private:
        cursor m_at;
    };
    using const_iterator = iterator;
    using value_type = typename iterator::value_type;

    view_range() = default;
    view_range(const cursor& begin, const cursor& end) : m_begin(begin), m_end(end) {}

    iterator begin() const { return iterator(m_begin); }
    iterator end() const { return iterator(m_end); }
    bool empty() const { return m_begin == m_end; }

private:
    cursor m_begin;
    cursor m_end;
};

// The attribute names of a map.
class key_cursor
{
public:
    key_cursor() = default;
    explicit key_cursor(const ustring8* name) : m_name(name) {}

    std::string_view read() const { return *m_name; }
    void next() { ++m_name; }
    bool operator==(const key_cursor& other) const { return m_name == other.m_name; }

private:
    const ustring8* m_name = nullptr;
};

using key_list = view_range<key_cursor>;

// The texts of an item in a vector map.
class text_cursor
{
public:
    text_cursor() = default;
    explicit text_cursor(const item_values& values) : m_rest(values) { next(); }

    std::string_view read() const { return m_text; }
    void next() { m_has_text = m_rest.take(m_text); }
    bool operator==(const text_cursor& other) const
    {
        return m_has_text == other.m_has_text && (!m_has_text || m_rest == other.m_rest);
    }

private:
    item_values m_rest;
    std::string_view m_text;
    bool m_has_text = false;
};

using text_list = view_range<text_cursor>;

// The names and values of a row.
class attribute_cursor
{
public:
    attribute_cursor() = default;
    explicit attribute_cursor(const ustring8* end) : m_name(end) {}
    attribute_cursor(const ustring8* names, const item_values& row) : m_name(names), m_rest(row) { take_value(); }

    std::pair<std::string_view, std::string_view> read() const { return {*m_name, m_value}; }
    void next()
    {
        ++m_name;
        take_value();
    }
    bool operator==(const attribute_cursor& other) const { return m_name == other.m_name; }

private:
    void take_value()
    {
        m_is_in_row = m_is_in_row && m_rest.take(m_value);
        if (!m_is_in_row) m_value = {};
    }

    const ustring8* m_name = nullptr;
    item_values m_rest;
    std::string_view m_value;
    bool m_is_in_row = true;
};

// The attributes of an item in a collection map, or of an arg in a vector collection map; "name" comes first.
class attribute_list : public view_range<attribute_cursor>
{
public:
    attribute_list() = default;
    attribute_list(const std::vector<ustring8>& names, const item_values& row)
        : view_range(attribute_cursor(names.data(), row), attribute_cursor(names.data() + names.size()))
    {
    }

    // Returns the value of that attribute; none if the map has no such attribute name. Linear in the names.
    std::optional<std::string_view> value(std::string_view name) const
    {
        for (const auto& [each, value_of_name] : *this) {
            if (each == name) return value_of_name;
        }
        return std::nullopt;
    }
};

// The rows of an item in a vector collection map.
class row_cursor
{
public:
    row_cursor() = default;
    row_cursor(const std::vector<ustring8>* names, const item_values& rows) : m_names(names), m_rest(rows) {}

    attribute_list read() const { return {*m_names, m_rest}; }
    void next()
    {
        for (std::string_view value; m_rest.take(value);) {
        }
    }
    bool operator==(const row_cursor& other) const { return m_rest == other.m_rest; }

private:
    const std::vector<ustring8>* m_names = nullptr;
    item_values m_rest;
};

using row_list = view_range<row_cursor>;

class item_view
{
public:
    item_view(const stored_item& item, map_type kind, const std::vector<ustring8>* names)
        : m_item(item), m_kind(kind), m_names(names)
    {
    }

    std::string_view name() const { return m_item.key(); }

    // Simple map.
    std::string_view text() const
    {
        std::string_view text;
        if (m_kind == MT_SIMPLE) m_item.values().take(text);
        return text;
    }

    // Vector map.
    text_list texts() const
    {
        if (m_kind != MT_VECTOR) return {};
        return {text_cursor(m_item.values()), text_cursor()};
    }

    // Collection map.
    attribute_list attributes() const
    {
        if (m_kind != MT_COLLECTION) return {};
        return {*m_names, m_item.values()};
    }

    // Vector collection map.
    row_list rows() const
    {
        if (m_kind != MT_VECTOR_COLLECTION) return {};
        const item_values values = m_item.values();
        return {row_cursor(m_names, values), row_cursor(m_names, values.end())};
    }

private:
    stored_item m_item;
    map_type m_kind;
    const std::vector<ustring8>* m_names;
};

}  // namespace data_mapper4
