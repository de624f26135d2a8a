// Internal: checks the items and args of one map.
#pragma once

#include <cstddef>
#include <forward_list>
#include <set>
#include <string_view>
#include <vector>

#include "data_mapper/map_kind.h"
#include "data_mapper/report/element_checks.h"

namespace data_mapper4 {

class map_content
{
public:
    // `name` is the map's, for messages.
    map_content(const map_kind& kind, ustring8 name) : m_kind(kind), m_name(std::move(name)) {}

    // `text` is the text in the element, up to the end of its line; empty if there is none.
    void check_item(file_findings& findings, const xml_element& item, std::string_view text, std::size_t position);
    // Says that there is an element in the map that may be meant to be an item.
    void skip_unknown(const xml_element& element);

    void check_arg(file_findings& findings, const xml_element& arg, std::string_view text);

    // Adds a finding for each item whose name an earlier one has.
    void check_names(file_findings& findings, const xml_document& document);

private:
    struct named_item
    {
        std::string_view name;
        std::size_t position;  // in the document's index
    };

    void note_schema(const xml_element& row);
    void check_row(file_findings& findings, const xml_element& row);
    void add_unknown(file_findings& findings, std::string_view attribute);
    bool is_arg_in_place(file_findings& findings, const xml_element& arg);
    bool add_misplaced(file_findings& findings, const xml_element& arg, rule broken, const finding_text& text);
    void check_no_text(file_findings& findings, const xml_element& element, std::string_view text);
    bool check_form(file_findings& findings, const xml_element& element, attribute_form form);

    const map_kind& m_kind;
    ustring8 m_name;
    std::vector<named_item> m_items;
    std::forward_list<ustring8> m_normalized;  // names of items whose raw values are not plain
    std::string_view m_item;                   // the name of the last item, as written
    bool m_has_item = false;
    std::size_t m_args = 0;                       // of the last item
    bool m_is_misplaced_arg_known = false;        // whether there is a finding of it already
    std::vector<ustring8> m_schema;               // the attribute names of the first row, in order
    std::vector<std::string_view> m_known_names;  // the same, sorted
    std::string_view m_first_row;                 // its tag
    std::set<std::string_view> m_wrong_names;     // attribute names of which there is a finding already
};

}  // namespace data_mapper4
