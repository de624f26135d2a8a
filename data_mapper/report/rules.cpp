#include "data_mapper/report/rules.h"

#include <cstddef>
#include <iterator>

namespace data_mapper4 {

namespace {

constexpr auto error = severity::error;
constexpr auto warning = severity::warning;
constexpr auto no_code = map_error_t::no_error;
constexpr auto format = map_error_t::invalid_format;

// In the order of `rule`.
constexpr rule_traits rules[] = {
    {"missing-file", error, notice::always, map_error_t::file_not_found},
    {"outside-folder", error, notice::always, map_error_t::file_not_found},
    {"include-cycle", error, notice::always, format},
    {"included-twice", error, notice::always, map_error_t::duplicate_map},
    {"limit-reached", error, notice::never, no_code},
    {"unportable-path", warning, notice::never, no_code},

    {"unreadable-file", error, notice::always, format},
    {"bad-encoding", error, notice::always, format},
    {"bad-character", error, notice::always, format},
    {"bad-markup", error, notice::always, format},
    {"end-tag-mismatch", error, notice::always, format},
    {"repeated-attribute", error, notice::always, format},
    {"unknown-entity", error, notice::always, format},
    {"no-root", error, notice::always, format},
    {"unclosed-element", error, notice::structural, no_code},

    {"wrong-root", error, notice::always, format},
    {"nested-maps", error, notice::structural, no_code},
    {"unknown-element", error, notice::always, format},
    {"outside-map", error, notice::always, format},
    {"map-inside-map", error, notice::structural, no_code},
    {"include-inside-map", error, notice::structural, no_code},
    {"nested-element", error, notice::always, format},
    {"arg-inside-item", error, notice::always, format},
    {"arg-without-item", error, notice::always, format},
    {"arg-in-collection-map", error, notice::always, format},
    {"second-arg", error, notice::always, format},
    {"include-content", error, notice::always, format},
    {"text-in-element", error, notice::always, format},
    {"ignored-text", error, notice::never, no_code},

    {"missing-name", error, notice::always, format},
    {"nameless-map", error, notice::structural, no_code},
    {"name-not-first", error, notice::always, format},
    {"empty-name", error, notice::always, format},
    {"empty-text", error, notice::always, format},
    {"unexpected-attribute", error, notice::always, format},
    {"unknown-attribute", error, notice::always, map_error_t::collection_error},

    {"duplicate-item", error, notice::always, map_error_t::duplicate_item},
    {"duplicate-map", error, notice::always, map_error_t::duplicate_map},
    {"empty-map", warning, notice::never, no_code},
};
static_assert(std::size(rules) == static_cast<std::size_t>(rule::empty_map) + 1);

}  // namespace

const rule_traits& traits_of(rule broken)
{
    return rules[static_cast<std::size_t>(broken)];
}

}  // namespace data_mapper4
