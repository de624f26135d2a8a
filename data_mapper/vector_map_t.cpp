#include "data_mapper/vector_map_t.h"

#include "data_mapper/item_loader.h"

namespace data_mapper4 {

namespace {

// group = item arg*      arg = <arg name="TEXT"/>, TEXT not empty
class texts_reader
{
public:
    using items = std::map<ustring8, std::vector<ustring8>>;
    static constexpr element_form form = element_form::name_only;
    static constexpr bool ends_at_line = false;

    bool can_repeat() const { return true; }

    // Ends behind the first faulty arg, and the item keeps the texts before it. Every arg moves the line.
    group take(xml_element_queue& queue, std::vector<xml_value>& values, load_outcome& outcome)
    {
        queue.pop();
        bool is_sound = true;
        while (is_sound && is_arg_waiting(queue)) {
            const xml_element& arg = queue.front();
            outcome.stand_at(arg);
            is_sound = has_form(arg, form) && !name_of(arg).empty();
            if (is_sound) values.push_back(name_of(arg));
            queue.pop();
        }
        if (!is_sound) outcome.type(map_error_t::invalid_format);
        return group::add;
    }

    static std::vector<ustring8> make(const xml_value* values, std::size_t size) { return texts_of(values, size); }
};

}  // namespace

vector_map_t::vector_map_t() = default;
vector_map_t::vector_map_t(const vector_map_t& other) = default;
vector_map_t::~vector_map_t() = default;
vector_map_t& vector_map_t::operator=(const vector_map_t& other) = default;

// A faulty arg leaves its code in m_error and the load goes on; only the faults of an item end it.
map_error_t vector_map_t::load(const ustring8& map_name, xml_stream_parser& parser)
{
    return load_table(texts_reader(), map_name, parser, m_id, m_error, m_items);
}

void vector_map_t::clear()
{
    m_items.clear();
}

ustring8 vector_map_t::id()
{
    return m_id;
}

bool vector_map_t::has_item(const ustring8& item_name) const
{
    return m_items.read().count(item_name) != 0;
}

bool vector_map_t::get_args(const ustring8& item_name, std::vector<ustring8>& values) const
{
    const auto found = m_items.read().find(item_name);
    const bool is_found = found != m_items.read().end();
    // The name may be one of the values, so it is not touched before the search is done.
    if (is_found) {
        values = found->second;
    } else {
        values.clear();
    }
    return is_found;
}

vector_map_t::items::iterator vector_map_t::begin()
{
    return m_items.expose().begin();
}

vector_map_t::items::iterator vector_map_t::end()
{
    return m_items.expose().end();
}

bool vector_map_t::empty()
{
    return m_items.read().empty();
}

}  // namespace data_mapper4
