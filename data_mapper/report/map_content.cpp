#include "data_mapper/report/map_content.h"

#include <algorithm>
#include <iterator>

#include "data_mapper/report/nearest_name.h"
#include "data_mapper/report/wording.h"

namespace data_mapper4 {

// item = <item name="KEY"/>, in a collection map with further attributes
void map_content::check_item(file_findings& findings, const xml_element& item, std::string_view text,
                             std::size_t position)
{
    const bool is_row = m_kind.item == item_form::name_and_attributes;
    const auto form = is_row ? attribute_form::first : attribute_form::only;
    skip_unknown(item);
    check_no_text(findings, item, text);
    if (!text.empty() && item.attributes.empty()) return;  // the text was meant to be the name
    if (!check_form(findings, item, form)) return;
    m_item = item.attributes.front().value.raw;
    if (!check_not_empty(findings, item, rule::empty_name)) return;
    const auto& name = item.attributes.front().value;
    m_items.push_back({name.is_plain ? name.raw : m_normalized.emplace_front(name.normalized()), position});
    if (is_row) check_row(findings, item);
}

void map_content::skip_unknown(const xml_element& element)
{
    if (m_kind.item == item_form::name_and_attributes) note_schema(element);
    m_has_item = true;
    m_args = 0;
    m_is_misplaced_arg_known = m_is_misplaced_arg_known && m_kind.args == arg_form::none;
    m_item = {};
}

// arg = <arg name="TEXT"/>, in a vector collection map with further attributes
void map_content::check_arg(file_findings& findings, const xml_element& arg, std::string_view text)
{
    const bool is_row = m_kind.args == arg_form::rows;
    if (!is_arg_in_place(findings, arg)) return;
    ++m_args;
    check_no_text(findings, arg, text);
    if (is_row) note_schema(arg);
    if (!text.empty() && arg.attributes.empty()) return;
    if (!check_form(findings, arg, is_row ? attribute_form::first : attribute_form::only)) return;
    const rule if_empty = is_row ? rule::empty_name : rule::empty_text;
    if (m_kind.args != arg_form::text && !check_not_empty(findings, arg, if_empty)) return;
    if (is_row) check_row(findings, arg);
}

bool map_content::is_arg_in_place(file_findings& findings, const xml_element& arg)
{
    if (m_kind.args == arg_form::none) {
        return add_misplaced(findings, arg, rule::arg_in_collection_map,
                             {"a <collection_map> has no args; its items have attributes",
                              "write the values as further attributes of the <item>"});
    }
    if (!m_has_item) {
        return add_misplaced(findings, arg, rule::arg_without_item,
                             {"an <arg> follows its <item>; there is none here"});
    }
    if (m_kind.args == arg_form::text && m_args != 0) {
        return add_misplaced(findings, arg, rule::second_arg,
                             {"item " + in_quotes(m_item) + " has an <arg> already; in a <map> each item has only one",
                              "load stops here; a <vector_map> has any number of args for an item"});
    }
    return true;
}

// Only the first such arg of an item, or of a collection map: the others are the same mistake. Returns false.
bool map_content::add_misplaced(file_findings& findings, const xml_element& arg, rule broken, const finding_text& text)
{
    if (!m_is_misplaced_arg_known) findings.add(broken, tag_part(arg), [&] { return text; });
    m_is_misplaced_arg_known = true;
    return false;
}

void map_content::check_no_text(file_findings& findings, const xml_element& element, std::string_view text)
{
    if (text.empty()) return;
    findings.add(rule::text_in_element, text, [&] {
        const char* hint = "write <arg name=\"...\"/>";
        if (m_kind.args == arg_form::none) hint = "write it as an attribute of the item";
        if (m_kind.args != arg_form::none && element.tag == "item") hint = "write <arg name=\"...\"/> after the item";
        return finding_text{as_tag(element.tag) + " must not contain text", hint};
    });
}

// The same wrong attribute in several items is one mistake.
bool map_content::check_form(file_findings& findings, const xml_element& element, attribute_form form)
{
    const std::string_view wrong = unexpected_attribute(element, "name", form);
    if (!wrong.empty() && !m_wrong_names.insert(wrong).second) return false;
    return check_attributes(findings, element, "name", form);
}

// The first row names the attributes, even if something else is wrong with it.
void map_content::note_schema(const xml_element& row)
{
    if (!m_schema.empty() || row.attributes.empty()) return;
    m_first_row = tag_part(row);
    for (const auto& attribute : row.attributes) m_schema.emplace_back(attribute.name);
    for (const auto& attribute : row.attributes) m_known_names.push_back(attribute.name);
    std::sort(m_known_names.begin(), m_known_names.end());
}

void map_content::check_row(file_findings& findings, const xml_element& row)
{
    for (auto attribute = std::next(row.attributes.begin()); attribute != row.attributes.end(); ++attribute) {
        const std::string_view name = attribute->name;
        if (std::binary_search(m_known_names.begin(), m_known_names.end(), name)) continue;
        if (m_wrong_names.insert(name).second) add_unknown(findings, name);
    }
}

void map_content::add_unknown(file_findings& findings, std::string_view attribute)
{
    findings.add(rule::unknown_attribute, attribute, [&] {
        const ustring8 near(nearest_name(attribute, m_schema));
        return finding_text{in_quotes(attribute) + " is not an attribute of this map (" + listed(m_schema) + ')' +
                                did_you_mean(near.empty() ? near : in_quotes(near)),
                            {},
                            {findings.related("the attributes of the map are named here", m_first_row)}};
    });
}

void map_content::check_names(file_findings& findings, const xml_document& document)
{
    const auto is_before = [](const named_item& a, const named_item& b) { return a.name < b.name; };
    if (!std::is_sorted(m_items.begin(), m_items.end(), is_before)) {
        std::stable_sort(m_items.begin(), m_items.end(), is_before);
    }
    xml_element element;
    const auto value_of = [&](const named_item& item) {
        document.index.read(item.position, element);
        return element.attributes.front().value.raw;
    };
    const named_item* first = nullptr;
    std::string_view first_name;  // in the text; read once, because the item may have many attributes
    for (const named_item& item : m_items) {
        if (first == nullptr || first->name != item.name) {
            first = &item;
            first_name = {};
            continue;
        }
        findings.add(rule::duplicate_item, value_of(item), [&] {
            if (first_name.data() == nullptr) first_name = value_of(*first);
            return finding_text{"item " + in_quotes(item.name) + " is declared twice in map " + in_quotes(m_name),
                                {},
                                {findings.related("first declared here", first_name)}};
        });
    }
}

}  // namespace data_mapper4
