#include "data_mapper/vector_collection_map_t.h"

#include <utility>

#include "data_mapper/attrib_schema.h"
#include "data_mapper/item_content.h"

namespace data_mapper4 {

namespace {

// arg = <arg name="SET" .../>     SET is not empty
//
// Takes the arg that waits and appends its row. The first arg that is sound also gives the schema. The results of the
// schema functions are kept whole, so a sound arg sets the error back to no_error and line 0.
bool take_row(xml_stream_parser& parser, attrib_schema& schema, bool& is_schema_read, std::vector<attrib_row>& rows,
              map_error_t& error)
{
    xml_stream_parser::node arg = parser.node_queue_pop();
    error.line(arg.line);
    if (!has_form(arg, element_form::name_and_attributes) || name_of(arg).empty()) {
        error.type(map_error_t::invalid_format);
        return false;
    }
    if (!is_schema_read) {
        error = read_attrib_names(arg, schema, false);
        if (error.type() != map_error_t::no_error) return false;
        is_schema_read = true;
    }
    attrib_row row;
    error = read_attrib_values(arg, schema, row);
    if (error.type() != map_error_t::no_error) return false;
    rows.push_back(std::move(row));
    return true;
}

}  // namespace

vector_collection_map_t::vector_collection_map_t() = default;
vector_collection_map_t::vector_collection_map_t(const vector_collection_map_t& other) = default;
vector_collection_map_t::~vector_collection_map_t() = default;
vector_collection_map_t& vector_collection_map_t::operator=(const vector_collection_map_t& other) = default;

// A faulty arg drops its item and leaves its code in m_error; the load goes on, and the next sound arg clears the code.
// The line is set before it is known whether the waiting node is an item, so the node that ends the content gives it.
map_error_t vector_collection_map_t::load(const ustring8& map_name, xml_stream_parser& parser)
{
    m_id = map_name;
    m_error.type(map_error_t::no_error);
    bool is_schema_read = false;
    xml_stream_parser::node item;
    while (!parser.node_queue_empty()) {
        m_error.line(parser.node_queue_front().line);
        if (!is_item_waiting(parser)) break;
        items& known = m_items.write();
        items::iterator position;
        if (!take_item(parser, element_form::name_only, known, item, position, m_error)) break;
        std::vector<attrib_row> rows;
        while (is_arg_waiting(parser)) {
            if (!take_row(parser, m_attrib_names, is_schema_read, rows, m_error)) break;
        }
        if (m_error.type() != map_error_t::no_error) continue;
        if (!add_item(known, position, item, std::move(rows), m_error)) break;
    }
    return m_error;
}

void vector_collection_map_t::clear()
{
    m_items.clear();
}

ustring8 vector_collection_map_t::id()
{
    return m_id;
}

bool vector_collection_map_t::has_item(const ustring8& item_name) const
{
    return m_items.read().count(item_name) != 0;
}

bool vector_collection_map_t::get_args_vector(const ustring8& item_name,
                                              std::vector<std::map<ustring8, ustring8>>& args_vector) const
{
    // The name may be in one of the maps, so they are not touched before the search is done.
    const auto found = m_items.read().find(item_name);
    args_vector.clear();
    if (found == m_items.read().end()) return false;
    args_vector.resize(found->second.size());
    auto attribs = args_vector.begin();
    for (const attrib_row& row : found->second) fill_attribs(m_attrib_names, row, *attribs++);
    return true;
}

vector_collection_map_t::items::iterator vector_collection_map_t::begin()
{
    return m_items.expose().begin();
}

vector_collection_map_t::items::iterator vector_collection_map_t::end()
{
    return m_items.expose().end();
}

bool vector_collection_map_t::empty()
{
    return m_items.read().empty();
}

}  // namespace data_mapper4
