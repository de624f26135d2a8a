// Internal: the kinds of map, and everything in which their content differs.
#pragma once

#include <string_view>

#include "data_mapper/map_error_t.h"

namespace data_mapper4 {

// What an item may have besides its name.
enum class item_form
{
    name_only,            // such an item must not be the last element of a document
    name_and_attributes,  // the attributes are its row
};

// The args that follow an item, and the effect of a faulty one.
enum class arg_form
{
    none,
    text,   // at most one, which may be empty; a fault ends the load
    texts,  // any number, none empty; a fault ends the item, which keeps the texts before it, and the load goes on
    rows,   // any number of rows; a fault drops the item, and the load goes on; the next sound row clears the fault
};

// The line of a load's result. A row sets it to 0, whether the row is faulty or not.
enum class line_rule
{
    item,         // the last item's
    item_or_arg,  // the last item's or arg's
    row,          // 0 after a row has been read; the item's until then
    next,         // that of the element that ends the content, if there is one
};

struct map_kind
{
    const char* tag;   // the map element's
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

// Return the kind, or nullptr if there is none.
const map_kind* find_kind(std::string_view tag);
const map_kind* find_kind(map_type type);

// Returns the name of the type, also of MT_UNKNOWN, or nullptr for a value that is not a map_type.
const char* text_of(map_type type);

}  // namespace data_mapper4
