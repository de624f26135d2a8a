// Internal: what the collection knows of each kind of map, one row a kind.
#pragma once

#include <string_view>

#include "data_mapper/map_collection.h"

// Keeps what is nested in an exported class from being exported with it.
#if defined(_WIN32)
#define DATA_MAPPER4_HIDDEN
#else
#define DATA_MAPPER4_HIDDEN __attribute__((visibility("hidden")))
#endif

namespace data_mapper4 {

struct DATA_MAPPER4_HIDDEN map_collection::map_kind
{
    const char* tag;  // of the element that declares such a map
    map_type type;

    // Loads a table off the parser's queue and, if that succeeds, registers and stores it under the name, which must be
    // new. The outcome is the collection's m_error; true when the map is loaded.
    bool (*load)(map_collection& maps, const ustring8& map_name, xml_stream_parser& parser);

    // Whether the loaded map has the item, or the attribute name.
    bool (*has_item)(const map_collection& maps, const ustring8& map_name, const ustring8& item_name);
    bool (*has_key)(const map_collection& maps, const ustring8& map_name, const ustring8& key);

    // The row, or nullptr when there is none.
    static const map_kind* of_tag(std::string_view tag);
    static const map_kind* of_type(map_type type);

private:
    static const map_kind rows[4];

    // The functions of a row, made from the collection's store of such tables.
    template <auto store, map_type type>
    static bool load_table(map_collection& maps, const ustring8& map_name, xml_stream_parser& parser);
    template <auto store>
    static bool has_item_in_copy(const map_collection& maps, const ustring8& map_name, const ustring8& item_name);
    template <auto store>
    static bool has_key_in_copy(const map_collection& maps, const ustring8& map_name, const ustring8& key);
    static bool has_no_key(const map_collection& maps, const ustring8& map_name, const ustring8& key);
};

}  // namespace data_mapper4
