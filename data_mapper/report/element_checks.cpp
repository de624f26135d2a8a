#include "data_mapper/report/element_checks.h"

#include <algorithm>
#include <iterator>

#include "data_mapper/map_kind.h"
#include "data_mapper/report/nearest_name.h"
#include "data_mapper/report/wording.h"
#include "platform/xml_markup.h"

namespace data_mapper4 {

namespace {

using NUVEK_2_18::parser::xml_attribute;
using NUVEK_2_18::parser::xml_cursor;

// The value with its quotes, so that an empty one can be seen.
std::string_view quoted_part(std::string_view value)
{
    return {value.data() - 1, value.size() + 2};
}

void add_missing(file_findings& findings, const xml_element& element, std::string_view wanted)
{
    findings.add(rule::missing_name, tag_part(element), [&] {
        const ustring8 name(wanted);
        return finding_text{as_tag(element.tag) + " needs the attribute \"" + name + '"',
                            "write <" + escaped(element.tag) + ' ' + name + "=\"...\"" +
                                (find_kind(element.tag) == nullptr ? "/>" : ">")};
    });
}

void add_unexpected(file_findings& findings, const xml_element& element, std::string_view attribute,
                    std::string_view wanted)
{
    findings.add(rule::unexpected_attribute, attribute, [&] {
        const bool has_wanted = std::any_of(element.attributes.begin(), element.attributes.end(),
                                            [&](const xml_attribute& each) { return each.name == wanted; });
        const std::vector<ustring8> candidates(has_wanted ? 0 : 1, ustring8(wanted));
        const ustring8 near(nearest_name(attribute, candidates));
        return finding_text{
            in_quotes(attribute) + " is not an attribute of " + as_tag(element.tag) +
                (near.empty() ? ", which has only " + in_quotes(wanted) : did_you_mean(in_quotes(near))),
            near.empty() && element.tag == "item" ? "the items of a <collection_map> have any attributes" : ""};
    });
}

// The end of the line in which the view begins.
std::string_view first_line(std::string_view text)
{
    return text.substr(0, text.find('\n'));
}

std::string_view without_space(std::string_view text)
{
    while (!text.empty() && NUVEK_2_18::parser::is_space(text.front())) text.remove_prefix(1);
    text = first_line(text);
    while (!text.empty() && NUVEK_2_18::parser::is_space(text.back())) text.remove_suffix(1);
    return text;
}

}  // namespace

std::string_view unexpected_attribute(const xml_element& element, std::string_view wanted, attribute_form form)
{
    if (form == attribute_form::first) return {};
    const auto first = element.attributes.begin();
    const bool has_wanted = first != element.attributes.end() && first->name == wanted;
    const auto other = has_wanted ? std::next(first) : first;
    return other == element.attributes.end() ? std::string_view() : other->name;
}

bool check_attributes(file_findings& findings, const xml_element& element, std::string_view wanted, attribute_form form)
{
    const auto& attributes = element.attributes;
    const auto found = std::find_if(attributes.begin(), attributes.end(),
                                    [&](const xml_attribute& each) { return each.name == wanted; });
    const std::string_view unexpected = unexpected_attribute(element, wanted, form);
    if (!unexpected.empty()) {
        add_unexpected(findings, element, unexpected, wanted);
    } else if (found == attributes.end()) {
        add_missing(findings, element, wanted);
    } else if (found != attributes.begin()) {
        findings.add(rule::name_not_first, found->name, [&] {
            return finding_text{in_quotes(wanted) + " must be the first attribute of " + as_tag(element.tag)};
        });
    } else {
        return true;
    }
    return false;
}

bool check_not_empty(file_findings& findings, const xml_element& element, rule broken)
{
    const xml_attribute& attribute = element.attributes.front();
    if (!attribute.value.empty()) return true;
    findings.add(broken, quoted_part(attribute.value.raw), [&] {
        return finding_text{in_quotes(attribute.name) + " of " + as_tag(element.tag) + " must not be empty"};
    });
    return false;
}

std::string_view first_text(const xml_document& document, std::size_t position)
{
    const char* const begin = document.index.begin_at(position);
    const char* const end = document.text.view().data() + document.sound_size;
    xml_cursor cursor(NUVEK_2_18::parser::view(begin, end));
    for (NUVEK_2_18::parser::text_run run; take_text_run(cursor, run);) {
        if (!run.is_blank) return run.is_cdata ? first_line(run.raw) : without_space(run.raw);
    }
    return {};
}

void check_no_texts(file_findings& findings, const xml_document& document, const xml_element& element, std::size_t next)
{
    for (std::size_t at = next - element.texts; at != next; ++at) {
        const std::string_view text = first_text(document, at);
        if (text.empty()) continue;
        findings.add(rule::ignored_text, text, [&] {
            return finding_text{"the text " + in_quotes(text) + " is ignored; " + as_tag(element.tag) +
                                " contains only elements"};
        });
    }
}

std::string_view tag_part(const xml_element& element)
{
    const auto size = static_cast<std::size_t>(element.tag.data() - element.begin) + element.tag.size();
    return {element.begin, size};
}

}  // namespace data_mapper4
