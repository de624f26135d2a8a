#include "data_mapper/map_t.h"

#include "data_mapper/item_loader.h"

namespace data_mapper4 {

namespace {

// group = item arg?      arg = <arg name="TEXT"/>, TEXT may be empty; no arg at all stands for the empty text
class text_reader
{
public:
    using items = std::map<ustring8, const ustring8>;
    static constexpr element_form form = element_form::name_only;
    static constexpr bool ends_at_line = false;

    bool can_repeat() const { return true; }

    // A fault is reported at the item's line, also when it lies in the arg behind it.
    group take(xml_element_queue& queue, std::vector<xml_value>& values, load_outcome& outcome)
    {
        queue.pop();
        values.emplace_back();
        if (!is_arg_waiting(queue)) return group::add;
        const xml_element& arg = queue.front();
        const bool is_sound = has_form(arg, form);
        if (is_sound) values.back() = name_of(arg);
        queue.pop();
        if (is_sound) return group::add;
        outcome.type(map_error_t::invalid_format);
        return group::end;
    }

    static ustring8 make(const xml_value* values, std::size_t /*size*/) { return values->text(); }
};

}  // namespace

map_t::map_t() = default;
map_t::map_t(const map_t& other) = default;
map_t::~map_t() = default;
map_t& map_t::operator=(const map_t& other) = default;

map_error_t map_t::load(const ustring8& map_name, xml_stream_parser& parser)
{
    return load_table(text_reader(), map_name, parser, m_id, m_error, m_items);
}

void map_t::clear()
{
    m_items.clear();
}

ustring8 map_t::id()
{
    return m_id;
}

bool map_t::has_item(const ustring8& item_name) const
{
    return m_items.read().count(item_name) != 0;
}

bool map_t::get_arg(const ustring8& item_name, ustring8& value) const
{
    const auto found = m_items.read().find(item_name);
    if (found == m_items.read().end()) return false;
    value = found->second;
    return true;
}

map_t::items::iterator map_t::begin()
{
    return m_items.expose().begin();
}

map_t::items::iterator map_t::end()
{
    return m_items.expose().end();
}

bool map_t::empty()
{
    return m_items.read().empty();
}

}  // namespace data_mapper4
