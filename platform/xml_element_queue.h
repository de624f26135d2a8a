// Internal: the elements of a checked document as a queue, which is a position in the document's index.
//
// A node's strings and lists cost more than everything else that a table's load does, so the tables read elements, which
// are views. A host takes nodes off the same queue.
#pragma once

#include <cstddef>

#include "platform/ustring.h"
#include "platform/xml_document.h"
#include "platform/xml_element.h"

namespace NUVEK_2_18::parser {

class xml_element_queue
{
public:
    xml_element_queue() = default;
    explicit xml_element_queue(xml_document document);

    bool empty() const { return m_position == m_document.index.size(); }

    // The next element, left in the queue, which is not empty. Valid until pop(); its views hold as long as the document.
    const xml_element& front()
    {
        if (!m_is_front_read) read_front();
        return m_front;
    }

    // Whether nothing follows the front element.
    bool is_last();

    // The front element, to change it; and the line that it has from then on. What its new views refer to must hold as
    // long as they are used.
    xml_element& change_front(unsigned long line);

    void pop();

    // The number of the front element, which grows from element to element; and going back to an earlier element.
    std::size_t position() const { return m_position; }
    void go_back(std::size_t position);

    // How many elements are open around the front element.
    std::size_t depth();

    // The text of the front element, which has data.
    strings::ustring8 data();

    // The line of the element at the position, counted from 1; and then its column, in bytes from 1. Elements must be
    // asked for in the order of the document.
    unsigned long line_of(std::size_t position);
    std::size_t column() const { return static_cast<std::size_t>(m_counted - m_line_begin) + 1; }

private:
    void read_front();

    xml_document m_document;
    std::size_t m_position = 0;
    std::size_t m_open = 0;  // elements that are open before the front element
    xml_element m_front;
    bool m_is_front_read = false;
    std::size_t m_next = 0;  // the position after the front element, once that is read

    std::size_t m_changed = static_cast<std::size_t>(-1);  // the position of the element that was changed last
    unsigned long m_changed_line = 0;

    // How far lines were counted.
    const char* m_counted = nullptr;
    unsigned long m_line = 1;
    const char* m_line_begin = nullptr;
};

}  // namespace NUVEK_2_18::parser
