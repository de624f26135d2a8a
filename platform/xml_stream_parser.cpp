#include "platform/xml_stream_parser.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "platform/text_file.h"
#include "platform/xml_document.h"
#include "platform/xml_node_reader.h"

namespace NUVEK_2_18::parser {

struct xml_stream_parser::state
{
    state(const strings::ustring16& path, unsigned int option_word)
        : file(path), is_header_optional((option_word & header_optional) != 0)
    {
        if (!file.is_open()) error = file_not_found;
    }

    void parse()
    {
        error = fatal_error;  // stands if memory runs out on the way
        document = file.read();
        const checked_document checked = check_document(document, is_header_optional);
        const std::string_view text = document.text;
        if (checked.outcome != end_of_file && checked.outcome != incomplete) {
            const std::string_view before = text.substr(0, checked.fault_position);
            fault_line = 1 + static_cast<unsigned long>(std::count(before.begin(), before.end(), '\n'));
        }
        waiting = checked.nodes;
        reader = xml_node_reader(text.substr(0, checked.sound_size));
        error = checked.outcome;
    }

    // Makes the node in front, if one waits that was not made yet.
    void make_front()
    {
        if (is_front_made || waiting == 0) return;
        // An exception on the way leaves the reader within a node, so there must be no going on.
        const std::size_t count = std::exchange(waiting, 0);
        front = reader.read();
        is_front_made = true;
        waiting = count;
    }

    text_file file;
    bool is_header_optional;
    error_type error = no_error;
    unsigned long fault_line = 0;
    document_text document;
    xml_node_reader reader{std::string_view()};
    std::size_t waiting = 0;  // nodes in the queue, the one in front included
    node front;
    bool is_front_made = false;
};

xml_stream_parser::xml_stream_parser(const strings::ustring16& path, unsigned int options)
    : m_state(std::make_unique<state>(path, options))
{
}

xml_stream_parser::~xml_stream_parser() = default;

const xml_stream_parser::error_type& xml_stream_parser::error()
{
    return m_state->error;
}

const xml_stream_parser::error_type& xml_stream_parser::parse()
{
    if (m_state->error == no_error) m_state->parse();
    return m_state->error;
}

unsigned long xml_stream_parser::error_line() const
{
    return m_state->fault_line;
}

bool xml_stream_parser::node_queue_empty() const
{
    return m_state->waiting == 0;
}

xml_stream_parser::node& xml_stream_parser::node_queue_front()
{
    if (node_queue_empty()) m_state->front = node();
    m_state->make_front();
    return m_state->front;
}

xml_stream_parser::node xml_stream_parser::node_queue_pop()
{
    m_state->make_front();
    node popped = std::move(m_state->front);
    m_state->front = node();
    m_state->is_front_made = false;
    if (m_state->waiting != 0) --m_state->waiting;
    return popped;
}

}  // namespace NUVEK_2_18::parser
