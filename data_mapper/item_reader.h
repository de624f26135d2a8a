// Internal: the grammar of items in all kinds of map, read off a parser's queue in batches.
//
//     content = (item arg*)*     consecutive elements of the queue, whatever their nesting in the document
//     item    = <item name="KEY"/>
//     arg     = <arg name="VALUE"/>
//
// map_kind.h says what differs from kind to kind. item_loader.h checks that keys are new to the table, for a whole
// batch at once.
#pragma once

#include <cstddef>
#include <vector>

#include "data_mapper/attrib_schema.h"
#include "data_mapper/item_batch.h"
#include "data_mapper/map_error_t.h"
#include "data_mapper/map_kind.h"
#include "platform/xml_element_queue.h"
#include "platform/xml_stream_parser.h"

namespace data_mapper4 {

using NUVEK_2_18::parser::xml_element;
using NUVEK_2_18::parser::xml_element_queue;
using NUVEK_2_18::parser::xml_stream_parser;

class item_reader
{
public:
    // `schema` is the map's, used only by kinds with rows. `error` is the result of the previous load; its line stays
    // until this load sets one.
    item_reader(map_type type, xml_stream_parser& parser, attrib_schema& schema, map_error_t& error);

    // Gathers and sorts the next items of the content. Returns false if there are none.
    bool gather();
    const item_batch& batch() const { return m_batch; }

    // Ends the load at this item, because its key is not new. The queue goes back to just after the item.
    void end_at_duplicate(const gathered_item& item);

    // Ends the load with this code.
    void end(map_error_t::result_type type);

    // Sets the line of the result, which completes it, and returns it.
    map_error_t result();

private:
    template <std::size_t size>
    bool is_waiting(const char (&tag)[size]);
    void note_line();
    void set_row_result(const map_error_t& result);
    void read_item();
    bool read_args();
    bool read_text();
    bool read_texts();
    bool read_rows();
    bool read_row();

    const map_kind& m_kind;
    xml_element_queue& m_queue;
    attrib_schema& m_schema;
    map_error_t& m_error;
    bool m_is_schema_read = false;
    bool m_is_over = false;
    bool m_has_line = false;          // whether the result's line is that of an element
    std::size_t m_line_position = 0;  // that element's position
    std::size_t m_gathered = 0;       // the size of all batches together
    item_batch m_batch;
};

// Returns the normalized values.
std::vector<ustring8> texts_of(const xml_value* values, std::size_t size);

}  // namespace data_mapper4
