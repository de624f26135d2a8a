// Internal: a parser's queue, for readers that can do without whole nodes.
//
// A node's strings and lists cost more than everything else that a table's load does, so the tables look at elements
// where they stand in the text. What they take is what a host would have taken as nodes from the same queue.
#pragma once

#include <cstddef>

#include "platform/xml_element_reader.h"
#include "platform/xml_stream_parser.h"

namespace NUVEK_2_18::parser {

class xml_element_queue
{
public:
    using node = xml_stream_parser::node;

    // A place in the queue, to go back to.
    struct mark
    {
        xml_element_reader::place place;
        std::size_t waiting;
    };

    // The queue of a parser. The parser's own operations work on the same one.
    static xml_element_queue& of(xml_stream_parser& parser);

    xml_element_queue() = default;
    xml_element_queue(const xml_element_reader& reader, std::size_t elements, bool can_go_back);

    bool empty() const { return m_waiting == 0; }

    // How many elements wait.
    std::size_t size() const { return m_waiting; }

    // The next element, left in the queue, which is not empty. Its attributes go with it, the views in it stay as long
    // as the document, but for those of an element that was handed out as a node before.
    const xml_element& front()
    {
        if (!m_is_front_read || m_is_node_made) look_at_front();
        return m_front;
    }
    void pop()
    {
        m_is_front_read = false;
        m_is_node_made = false;
        if (m_waiting != 0) --m_waiting;
    }

    // The line at which the front element begins, or one that was in front since a line was last asked for.
    unsigned long line_of(const char* begin) { return m_reader.line_of(begin); }

    // Whether the front element can be gone back to; and doing so.
    bool can_mark() { return m_can_go_back && !m_is_node_made && front().form == xml_element::kind::whole; }
    mark front_mark() { return {m_reader.place_of(front()), m_waiting}; }
    void go_to(const mark& there);

    // The front element as a node, made on demand; a default node when there is none.
    node& front_node();
    node pop_node();

private:
    void make_node();
    void look_at_front();
    void look_at_node();

    xml_element_reader m_reader;
    std::size_t m_waiting = 0;
    bool m_can_go_back = false;
    xml_element m_front;
    bool m_is_front_read = false;
    node m_node;
    bool m_is_node_made = false;
};

}  // namespace NUVEK_2_18::parser
