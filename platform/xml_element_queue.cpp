#include "platform/xml_element_queue.h"

#include <utility>

#include "platform/byte_runs.h"
#include "platform/xml_markup.h"

namespace NUVEK_2_18::parser {

xml_element_queue::xml_element_queue(std::shared_ptr<const xml_document> document)
    : m_document(std::move(document)),
      m_size(m_document->index.size()),
      m_counted(m_document->text.view().data()),
      m_line_begin(m_counted)
{
}

void xml_element_queue::read_front()
{
    m_next = m_document->index.read(m_position, m_front);
    m_is_front_read = true;
}

bool xml_element_queue::is_last()
{
    front();
    return m_next == m_size;
}

xml_element& xml_element_queue::change_front(unsigned long line)
{
    front();
    m_changed = m_position;
    m_changed_line = line;
    return m_front;
}

void xml_element_queue::pop()
{
    if (front().form == xml_element::kind::opening) ++m_open;
    if (front().form == xml_element::kind::closing) --m_open;
    m_position = m_next;
    m_is_front_read = false;
}

std::size_t xml_element_queue::depth()
{
    return front().form == xml_element::kind::closing ? m_open - 1 : m_open;
}

strings::ustring8 xml_element_queue::data()
{
    strings::ustring8 text;
    const char* const end = m_document->text.view().data() + m_document->sound_size;
    for (std::size_t at = m_next - front().texts; at != m_next; ++at) {
        append_content(view(m_document->index.begin_at(at), end), text);
    }
    return text;
}

unsigned long xml_element_queue::line_of(std::size_t position)
{
    if (position == m_changed) return m_changed_line;
    const char* const begin = m_document->index.begin_at(position);
    const std::size_t lines = count_lines(m_counted, begin);
    if (lines != 0) {
        m_line += static_cast<unsigned long>(lines);
        m_line_begin = begin;
        while (m_line_begin[-1] != '\n') --m_line_begin;
    }
    m_counted = begin;
    return m_line;
}

}  // namespace NUVEK_2_18::parser
