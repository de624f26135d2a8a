// Internal: the grammar of items in all kinds of map, read off a parser's queue.
//
//     content = (item arg*)*     consecutive elements of the queue, whatever their nesting in the document
//     item    = <item name="KEY"/>
//     arg     = <arg name="VALUE"/>
//
// map_kind.h says what differs from kind to kind.
#pragma once

#include <cstddef>
#include <functional>
#include <string_view>
#include <vector>

#include "data_mapper/attrib_schema.h"
#include "data_mapper/item_writer.h"
#include "data_mapper/map_error_t.h"
#include "data_mapper/map_kind.h"
#include "platform/xml_element_queue.h"
#include "platform/xml_stream_parser.h"

namespace data_mapper4 {

using NUVEK_2_18::parser::xml_element_queue;
using NUVEK_2_18::parser::xml_stream_parser;

class item_reader
{
public:
    using key_test = std::function<bool(std::string_view)>;

    // `names` is the map's schema, used only by kinds with rows. `error` is the result of the previous load; its line
    // stays until this load sets one. `is_taken` tells which keys are taken besides those in the store.
    item_reader(map_type type, xml_stream_parser& parser, std::vector<ustring8>& names, map_error_t& error,
                item_store& items, key_test is_taken = nullptr);

    // Adds the items of the content to the store, up to the first fault. Returns the load's result.
    map_error_t load();

private:
    template <std::size_t size>
    bool is_waiting(const char (&tag)[size]);
    void note_line();
    void set_row_result(const map_error_t& result);
    void end(map_error_t::result_type type);
    void read_item();
    bool begin_item(const xml_value& name);
    void look_ahead();
    bool read_args();
    bool read_text();
    bool read_texts();
    bool read_rows();
    bool read_row();

    const map_kind& m_kind;
    xml_element_queue& m_queue;
    attrib_schema m_schema;
    map_error_t& m_error;
    item_writer m_items;
    key_test m_is_taken;
    bool m_is_schema_read = false;
    bool m_is_over = false;
    bool m_has_line = false;          // whether the result's line is that of an element
    std::size_t m_line_position = 0;  // that element's position
    std::size_t m_begin;              // the position of the first element
    std::size_t m_known_end;          // room has been made for the elements before this position
};

}  // namespace data_mapper4
