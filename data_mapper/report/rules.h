// Internal: the rules of a check, and what is the same for all findings of one.
#pragma once

#include "data_mapper/load_report.h"

namespace data_mapper4 {

enum class rule
{
    // Files.
    missing_file,
    outside_folder,
    include_cycle,
    included_twice,
    limit_reached,
    unportable_path,

    // XML.
    unreadable_file,
    bad_encoding,
    bad_character,
    bad_markup,
    end_tag_mismatch,
    repeated_attribute,
    unknown_entity,
    no_root,
    unclosed_element,

    // Elements in the wrong place.
    wrong_root,
    nested_maps,
    unknown_element,
    outside_map,
    map_inside_map,
    include_inside_map,
    nested_element,
    arg_inside_item,
    arg_without_item,
    arg_in_collection_map,
    second_arg,
    include_content,
    text_in_element,
    ignored_text,

    // Attributes.
    missing_name,
    nameless_map,
    name_not_first,
    empty_name,
    empty_text,
    unexpected_attribute,
    unknown_attribute,

    // Maps.
    duplicate_item,
    duplicate_map,
    empty_map,
};

// Whether load notices what breaks the rule. Structural: load does not notice that, but may end at what follows from it.
enum class notice
{
    always,
    structural,
    never,
};

struct rule_traits
{
    const char* name;
    severity level;
    notice by_load;
    map_error_t::result_type code;  // with which load ends a file or a map at such a fault
};

const rule_traits& traits_of(rule broken);

}  // namespace data_mapper4
