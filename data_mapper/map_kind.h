// Internal: the kinds of map, and all that their content differs in.
#pragma once

#include <string_view>

#include "data_mapper/map_error_t.h"

namespace data_mapper4 {

// What an item may carry besides its name.
enum class item_form
{
    name_only,            // such an item is not the last element of a document
    name_and_attributes,  // the attributes are its row
};

// The args that follow an item, and what a faulty one does.
enum class arg_form
{
    none,
    text,  // at most one, perhaps with an empty text; a fault ends the load
    texts,  // any number, none of them empty; a fault ends the item, which keeps the texts before it, and the load goes on
    rows,  // any number of rows; a fault drops the item and the load goes on; the next sound row forgets the fault
};

// The line of a load's result. A row's line is 0, in a fault as in a success.
enum class line_rule
{
    item,         // of the last item
    item_or_arg,  // of the last item or arg
    row,          // 0 once a row was read, of the item before that
    next,         // of the element that ends the content, if there is one
};

struct map_kind
{
    const char* tag;   // of the element that declares such a map
    const char* text;  // the type's name
    map_type type;
    item_form item;
    arg_form args;
    line_rule line;
};

inline constexpr map_kind map_kinds[] = {
    {"map", "MT_SIMPLE", MT_SIMPLE, item_form::name_only, arg_form::text, line_rule::item},
    {"vector_map", "MT_VECTOR", MT_VECTOR, item_form::name_only, arg_form::texts, line_rule::item_or_arg},
    {"collection_map", "MT_COLLECTION", MT_COLLECTION, item_form::name_and_attributes, arg_form::none, line_rule::row},
    {"vector_collection_map", "MT_VECTOR_COLLECTION", MT_VECTOR_COLLECTION, item_form::name_only, arg_form::rows,
     line_rule::next},
};

// The kind, or nullptr if there is none.
const map_kind* find_kind(std::string_view tag);
const map_kind* find_kind(map_type type);

// The name of the type, "MT_UNKNOWN" included, or nullptr for a value that is none.
const char* text_of(map_type type);

}  // namespace data_mapper4
