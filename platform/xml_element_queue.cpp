#include "platform/xml_element_queue.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace NUVEK_2_18::parser {

namespace {

std::uint32_t limited(std::size_t number)
{
    return static_cast<std::uint32_t>(std::min<std::size_t>(number, std::numeric_limits<std::uint32_t>::max()));
}

}  // namespace

xml_element_queue::xml_element_queue(const xml_element_reader& reader, std::size_t elements, bool can_go_back)
    : m_reader(reader), m_waiting(elements), m_can_go_back(can_go_back)
{
}

void xml_element_queue::look_at_front()
{
    if (m_is_node_made) {
        look_at_node();
    } else {
        // An exception on the way leaves the reader within an element, so there must be no going on.
        const std::size_t count = std::exchange(m_waiting, 0);
        m_reader.read(m_front);
        m_is_front_read = true;
        m_waiting = count;
    }
}

void xml_element_queue::go_to(const mark& there)
{
    m_reader.go_to(there.place);
    m_waiting = there.waiting;
    m_is_front_read = false;
}

// The node in front may have been changed since it was handed out.
void xml_element_queue::look_at_node()
{
    m_front.tag = m_node.tag;
    m_front.has_data = !m_node.data.empty();
    m_front.line = m_node.line;
    m_front.attributes.clear();
    for (const auto& [name, value] : m_node.attributes) m_front.attributes.push_back({name, {value, true}});
}

void xml_element_queue::make_node()
{
    const xml_element& element = front();
    node made;
    made.status =
        element.form == xml_element::kind::opening ? xml_stream_parser::incomplete : xml_stream_parser::no_error;
    made.closing = element.form == xml_element::kind::closing;
    made.tag = element.tag;
    made.line = m_reader.line_of(element.begin);
    made.column = limited(m_reader.column());
    made.depth = limited(m_reader.depth());
    for (const xml_attribute& each : element.attributes) made.attributes.emplace_back(each.name, each.value.text());
    if (element.has_data) made.data = std::move(m_reader.data());
    m_node = std::move(made);
    m_is_node_made = true;
}

xml_element_queue::node& xml_element_queue::front_node()
{
    if (empty()) m_node = node();
    if (!empty() && !m_is_node_made) make_node();
    return m_node;
}

xml_element_queue::node xml_element_queue::pop_node()
{
    node popped = std::move(front_node());
    m_node = node();
    pop();
    return popped;
}

}  // namespace NUVEK_2_18::parser
