#include "data_mapper/report/content_checker.h"

#include <algorithm>
#include <utility>

#include "data_mapper/report/nearest_name.h"
#include "data_mapper/report/wording.h"
#include "data_mapper/report/xml_findings.h"

namespace data_mapper4 {

namespace {

using kind = xml_element::kind;

bool is_item_or_arg(std::string_view tag)
{
    return tag == "item" || tag == "arg";
}

// What may be in a map, or in the root.
std::vector<ustring8> known_tags(bool is_in_map)
{
    if (is_in_map) return {"item", "arg"};
    std::vector<ustring8> tags = {"include"};
    for (const map_kind& each : map_kinds) tags.emplace_back(each.tag);
    return tags;
}

}  // namespace

content_checker::content_checker(const file_findings& findings, const xml_document& document, std::size_t reading,
                                 map_names& names)
    : m_findings(findings), m_document(document), m_reading(reading), m_names(names), m_left_open(left_open(document))
{
    m_open.emplace_back();
}

bool content_checker::next()
{
    m_is_include = false;
    while (!m_is_include && m_next != m_document.index.size()) {
        m_position = m_next;
        m_next = m_document.index.read(m_position, m_element);
        take();
    }
    if (m_is_include || m_is_at_end) return m_is_include;
    m_is_at_end = true;
    for (const open_element& each : m_open) {
        if (each.content != nullptr) each.content->check_names(m_findings, m_document);
    }
    // Without <maps>, a second map is a second root; that is the same mistake.
    const bool is_known = m_is_root_wrong && m_document.fault == NUVEK_2_18::parser::xml_fault::second_root;
    if (!is_known) add_xml_finding(m_findings, m_document, m_left_open);
    return false;
}

// An element that is never closed is not taken for the container of what follows it, unless it is meant to have content.
bool content_checker::is_left_open() const
{
    return std::binary_search(m_left_open.begin(), m_left_open.end(), m_position);
}

void content_checker::take()
{
    if (m_element.form == kind::closing) return close();
    role taken_as = role::unknown;
    switch (inside().taken_as) {
        case role::document:
            taken_as = check_root();
            break;
        case role::root:
            taken_as = check_in_root();
            break;
        case role::map:
            taken_as = check_in_map();
            break;
        case role::item:
            taken_as = check_in_item();
            break;
        case role::include:
            taken_as = check_in_include();
            break;
        case role::unknown:
            taken_as = check_in_unknown();
            break;
    }
    const bool may_contain = taken_as == role::root || taken_as == role::map;
    if (may_contain || m_is_include) check_no_texts(m_findings, m_document, m_element, m_next);
    const bool is_opened = m_element.form == kind::opening && (may_contain || !is_left_open());
    std::unique_ptr<map_content> content = std::exchange(m_content, nullptr);
    map_content* const map = taken_as == role::item ? inside().map : content.get();
    if (is_opened) m_open.push_back({taken_as, m_element.tag, std::move(content), map, is_left_open()});
}

void content_checker::close()
{
    // An element that is not closed cannot be around one that is, so this closes the innermost one.
    const role closed = inside().taken_as;
    if (closed == role::root || closed == role::map) check_no_texts(m_findings, m_document, m_element, m_next);
    if (inside().content != nullptr) inside().content->check_names(m_findings, m_document);
    m_open.pop_back();
}

// root = <maps>
content_checker::role content_checker::check_root()
{
    if (m_element.tag == "maps") {
        if (!m_element.attributes.empty()) {
            const std::string_view name = m_element.attributes.front().name;
            m_findings.add(rule::unexpected_attribute, name, [&] {
                return finding_text{in_quotes(name) + " is not an attribute of <maps>, which has none"};
            });
        }
        return role::root;
    }
    const bool has_attributes = !m_element.attributes.empty();
    const map_kind* const found = has_attributes ? find_kind(m_element.tag) : nullptr;
    const ustring8 near(nearest_name(m_element.tag, {"maps"}));
    m_is_root_wrong = true;
    m_findings.add(rule::wrong_root, tag_part(m_element), [&] {
        return finding_text{"the root element is " + as_tag(m_element.tag) + ", not <maps>",
                            found == nullptr ? "" : "write <maps> and </maps> around the maps of a file"};
    });
    // With neither, this is not a file of maps.
    if (found != nullptr) return check_map();
    if (near.empty()) m_next = m_document.index.size();
    return role::root;
}

// root content = (map | include)*
content_checker::role content_checker::check_in_root()
{
    if (m_element.tag == "include") return check_include();
    if (find_kind(m_element.tag) != nullptr) return check_map();
    if (m_element.tag == "maps") {
        add_misplaced(rule::nested_maps, "<maps> inside <maps>; load reads nothing after it", "");
        return role::root;
    }
    if (is_item_or_arg(m_element.tag)) {
        if (!std::exchange(m_is_outside_known, true)) {
            add_misplaced(rule::outside_map, as_tag(m_element.tag) + " is not inside a map", "");
        }
        return role::unknown;
    }
    return add_unknown("<maps> contains maps and includes");
}

// map content = (item arg*)*
content_checker::role content_checker::check_in_map()
{
    if (is_item_or_arg(m_element.tag)) return check_item_or_arg();
    const ustring8 around = as_tag(inside().tag);
    if (m_element.tag == "maps") {
        add_misplaced(rule::nested_maps, "<maps> inside " + around + "; load reads nothing after it", "");
        return role::root;
    }
    // After a map without an end tag, what follows belongs in the root.
    const bool is_misplaced = !inside().is_left_open;
    if (m_element.tag == "include") {
        if (is_misplaced) {
            add_misplaced(rule::include_inside_map, "<include> inside " + around + "; load ends the map here",
                          "includes belong between the maps");
        }
        return check_include();
    }
    if (find_kind(m_element.tag) != nullptr) {
        if (is_misplaced) {
            add_misplaced(rule::map_inside_map,
                          as_tag(m_element.tag) + " inside " + around + "; load ends that map here",
                          "maps follow one another; none contains another");
        }
        return check_map();
    }
    return add_unknown(around + " contains items and args");
}

// An item or arg has no content.
content_checker::role content_checker::check_in_item()
{
    const bool is_known = std::exchange(inside().is_content_known, true);
    const std::string_view around = inside().tag;
    if (!is_known && m_element.tag == "arg" && around == "item") {
        add_misplaced(rule::arg_inside_item, "an <arg> follows its <item>, it does not go inside it",
                      "write <item .../><arg .../>");
    } else if (!is_known) {
        add_misplaced(rule::nested_element,
                      as_tag(m_element.tag) + " inside " + as_tag(around) + ", which must be empty",
                      "items and args follow one another; none contains another");
    }
    if (is_item_or_arg(m_element.tag)) return check_item_or_arg();
    return check_in_unknown();
}

content_checker::role content_checker::check_in_include()
{
    const bool is_known = std::exchange(inside().is_content_known, true);
    if (!is_known) {
        add_misplaced(rule::include_content, as_tag(m_element.tag) + " inside <include>, which must be empty",
                      "write <include file=\"...\"/>");
    }
    return check_in_unknown();
}

content_checker::role content_checker::check_in_unknown()
{
    if (m_element.tag == "include") return check_include();
    return find_kind(m_element.tag) == nullptr ? role::unknown : check_map();
}

// map = <KIND name="NAME">
content_checker::role content_checker::check_map()
{
    m_is_outside_known = false;
    const bool has_content = m_element.form == kind::opening;
    const bool has_attributes = !m_element.attributes.empty();
    ustring8 name;
    if (!has_attributes && !has_content) {
        m_findings.add(rule::nameless_map, tag_part(m_element),
                       [&] { return finding_text{as_tag(m_element.tag) + " has no name and is skipped"}; });
    } else if (check_attributes(m_findings, m_element, "name", attribute_form::only) &&
               check_not_empty(m_findings, m_element, rule::empty_name)) {
        name = m_element.attributes.front().value.text();
        check_name(name);
    }
    if (has_content) m_content = std::make_unique<map_content>(*find_kind(m_element.tag), std::move(name));
    return role::map;
}

void content_checker::check_name(const ustring8& name)
{
    const bool has_content = m_element.form == kind::opening;
    const std::string_view part = m_element.attributes.front().value.raw;
    const auto first = m_names.add(name, {m_reading, m_position, m_next, has_content, m_findings.part_of(part)});
    if (first) {
        m_findings.add(rule::duplicate_map, part, [&] {
            return finding_text{"map " + in_quotes(name) + " is declared twice",
                                {},
                                {{"first declared here", m_findings.writer().place_of(*first)}}};
        });
    } else if (!has_content && !m_element.has_data()) {
        m_findings.add(rule::empty_map, tag_part(m_element),
                       [&] { return finding_text{"map " + in_quotes(name) + " has no content and is not loaded"}; });
    }
    m_declares_maps = m_declares_maps || has_content;
}

// include = <include file="PATH"/>
content_checker::role content_checker::check_include()
{
    m_is_include = check_attributes(m_findings, m_element, "file", attribute_form::only) &&
                   check_not_empty(m_findings, m_element, rule::empty_name);
    if (!m_is_include) return role::include;
    m_include_path = m_element.attributes.front().value.text();
    m_include_part = m_element.attributes.front().value.raw;
    return role::include;
}

content_checker::role content_checker::check_item_or_arg()
{
    map_content* const map = inside().map;
    if (map == nullptr) return role::item;
    const std::string_view text = m_element.has_data() ? first_text(m_document, m_next - m_element.texts) : "";
    if (m_element.tag == "item") {
        map->check_item(m_findings, m_element, text, m_position);
    } else {
        map->check_arg(m_findings, m_element, text);
    }
    return role::item;
}

content_checker::role content_checker::add_unknown(const ustring8& hint)
{
    const ustring8 near(nearest_name(m_element.tag, known_tags(inside().taken_as == role::map)));
    m_findings.add(rule::unknown_element, tag_part(m_element), [&] {
        return finding_text{
            "unknown element " + as_tag(m_element.tag) + did_you_mean(near.empty() ? near : as_tag(near)),
            near.empty() ? hint : ""};
    });
    if (inside().taken_as == role::map) inside().map->skip_unknown(m_element);
    const map_kind* const meant = find_kind(near);
    if (meant == nullptr || m_element.form != kind::opening) return role::unknown;
    m_content = std::make_unique<map_content>(*meant, ustring8());
    return role::map;
}

void content_checker::add_misplaced(rule broken, const ustring8& message, const ustring8& hint)
{
    m_findings.add(broken, tag_part(m_element), [&] { return finding_text{message, hint}; });
}

}  // namespace data_mapper4
