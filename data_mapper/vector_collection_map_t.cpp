#include "data_mapper/vector_collection_map_t.h"

#include "data_mapper/attrib_schema.h"
#include "data_mapper/item_loader.h"

namespace data_mapper4 {

namespace {

// group = item arg*      arg = <arg name="SET" .../>, SET not empty: its attributes are a row
//
// The first arg that is sound also gives the schema. The results of the schema functions are kept whole, so a sound arg
// sets the outcome back to no_error and line 0.
class rows_reader
{
public:
    using items = std::map<ustring8, std::vector<std::vector<ustring8>>>;
    static constexpr element_form form = element_form::name_only;
    static constexpr bool ends_at_line = true;

    explicit rows_reader(attrib_schema& schema) : m_schema(schema) {}

    bool can_repeat() const { return m_is_schema_read; }

    // A faulty arg drops its item and leaves its code; the load goes on, and the next sound arg clears the code.
    group take(xml_element_queue& queue, std::vector<xml_value>& values, load_outcome& outcome)
    {
        queue.pop();
        bool is_sound = true;
        while (is_sound && is_arg_waiting(queue)) {
            is_sound = take_row(queue.front(), values, outcome);
            queue.pop();
        }
        return outcome.is_sound() ? group::add : group::drop;
    }

    // Rows are as long as the schema, which has a name at least.
    std::vector<std::vector<ustring8>> make(const xml_value* values, std::size_t size) const
    {
        std::vector<std::vector<ustring8>> rows;
        const std::size_t width = m_schema.size();
        rows.reserve(size == 0 ? 0 : size / width);
        for (std::size_t i = 0; i < size; i += width) rows.push_back(texts_of(values + i, width));
        return rows;
    }

private:
    bool take_row(const xml_element& arg, std::vector<xml_value>& values, load_outcome& outcome)
    {
        outcome.stand_at(arg);
        if (!has_form(arg, element_form::name_and_attributes) || name_of(arg).empty()) {
            outcome.type(map_error_t::invalid_format);
            return false;
        }
        if (!m_is_schema_read) {
            outcome.set(read_attrib_names(arg, m_schema, false));
            if (!outcome.is_sound()) return false;
            m_is_schema_read = true;
        }
        outcome.set(read_attrib_values(arg, m_schema, values));
        return outcome.is_sound();
    }

    attrib_schema& m_schema;
    bool m_is_schema_read = false;
};

}  // namespace

vector_collection_map_t::vector_collection_map_t() = default;
vector_collection_map_t::vector_collection_map_t(const vector_collection_map_t& other) = default;
vector_collection_map_t::~vector_collection_map_t() = default;
vector_collection_map_t& vector_collection_map_t::operator=(const vector_collection_map_t& other) = default;

// The line is set before it is known whether the waiting element is an item, so the one that ends the content gives it.
map_error_t vector_collection_map_t::load(const ustring8& map_name, xml_stream_parser& parser)
{
    return load_table(rows_reader(m_attrib_names), map_name, parser, m_id, m_error, m_items);
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
    for (const std::vector<ustring8>& row : found->second) fill_attribs(m_attrib_names, row, *attribs++);
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
