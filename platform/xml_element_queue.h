// Internal: the elements of a checked document as a queue, which is a position in the document's index.
//
// Making a node's strings and lists costs more than the rest of a table's load, so the tables read elements, which are
// views. A host takes nodes off the same queue.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

#include "platform/ustring.h"
#include "platform/xml_document.h"
#include "platform/xml_element.h"

namespace NUVEK_2_18::parser {

class xml_element_queue
{
public:
    xml_element_queue() = default;
    explicit xml_element_queue(std::shared_ptr<const xml_document> document);

    bool empty() const { return m_position == m_size; }

    // The next element; it stays in the queue, which must not be empty. Valid until pop(). Its views are valid as long
    // as the document is.
    const xml_element& front()
    {
        if (!m_is_front_read) read_front();
        return m_front;
    }

    // Whether nothing follows the front element.
    bool is_last();

    // Returns the front element, to be changed, and sets its line. What its new views refer to must outlive their use.
    xml_element& change_front(unsigned long line);

    void pop();

    // The position of the front element, which grows from element to element.
    std::size_t position() const { return m_position; }

    // Measures the front element and those that follow it, as xml_index::measure() does.
    xml_run measure(std::string_view tag, std::size_t limit) const
    {
        return m_document->index.measure(m_position, tag, limit);
    }

    // How many elements are open around the front element.
    std::size_t depth();

    // The text of the front element, which must have data.
    strings::ustring8 data();

    // The line of the element at the position, counted from 1. column() is the column of the element that line_of() was
    // last called for, in bytes, counted from 1. Positions must not decrease from call to call.
    unsigned long line_of(std::size_t position);
    std::size_t column() const { return static_cast<std::size_t>(m_counted - m_line_begin) + 1; }

private:
    void read_front();

    std::shared_ptr<const xml_document> m_document;
    std::size_t m_size = 0;  // of the index
    std::size_t m_position = 0;
    std::size_t m_open = 0;  // the number of elements that are open before the front element
    xml_element m_front;
    bool m_is_front_read = false;
    std::size_t m_next = 0;  // the position after the front element, once it is read

    std::size_t m_changed = static_cast<std::size_t>(-1);  // the position of the element that was changed last
    unsigned long m_changed_line = 0;

    // Where the line count has got to.
    const char* m_counted = nullptr;
    unsigned long m_line = 1;
    const char* m_line_begin = nullptr;
};

}  // namespace NUVEK_2_18::parser
