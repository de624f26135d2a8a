#include "platform/xml_stream_parser.h"

#include "platform/byte_runs.h"
#include "platform/text_file.h"
#include "platform/xml_document.h"
#include "platform/xml_element_queue.h"

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
        if (checked.outcome != end_of_file && checked.outcome != incomplete) {
            const char* const begin = document.text.data();
            fault_line = 1 + static_cast<unsigned long>(count_lines(begin, begin + checked.fault_position));
        }
        // What lies behind is never read again, and the zero bytes that end the text keep the reader from it.
        document.text.resize(checked.sound_size);
        const xml_element_reader reader(document.text.view(), checked.has_mixed_text);
        queue = xml_element_queue(reader, checked.nodes, !checked.has_mixed_text);
        error = checked.outcome;
    }

    text_file file;
    bool is_header_optional;
    error_type error = no_error;
    unsigned long fault_line = 0;
    document_text document;
    xml_element_queue queue;
};

xml_element_queue& xml_element_queue::of(xml_stream_parser& parser)
{
    return parser.m_state->queue;
}

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
    return m_state->queue.empty();
}

xml_stream_parser::node& xml_stream_parser::node_queue_front()
{
    return m_state->queue.front_node();
}

xml_stream_parser::node xml_stream_parser::node_queue_pop()
{
    return m_state->queue.pop_node();
}

}  // namespace NUVEK_2_18::parser
