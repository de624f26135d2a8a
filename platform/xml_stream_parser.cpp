#include "platform/xml_stream_parser.h"

#include <algorithm>
#include <cstddef>
#include <limits>

#include "platform/parser_elements.h"
#include "platform/text_file.h"
#include "platform/xml_document.h"
#include "platform/xml_element_queue.h"

namespace NUVEK_2_18::parser {

namespace {

// In the order of xml_fault.
constexpr xml_stream_parser::error_type fault_codes[] = {
    xml_stream_parser::no_error,
    xml_stream_parser::end_tag_mismatch,
    xml_stream_parser::attribute_redefined,
    xml_stream_parser::unexpected_character,
    xml_stream_parser::missing_quote,
    xml_stream_parser::unknown_entity,
    xml_stream_parser::missing_equal,
    xml_stream_parser::fatal_error,
    xml_stream_parser::no_xml_header,
    xml_stream_parser::no_root_tag,
};

xml_stream_parser::error_type error_of(const xml_document& document)
{
    if (document.fault != xml_fault::none) return fault_codes[static_cast<std::size_t>(document.fault)];
    return document.is_complete ? xml_stream_parser::end_of_file : xml_stream_parser::incomplete;
}

std::uint32_t limited(std::size_t number)
{
    return static_cast<std::uint32_t>(std::min<std::size_t>(number, std::numeric_limits<std::uint32_t>::max()));
}

xml_stream_parser::node make_node(xml_element_queue& queue)
{
    const xml_element& element = queue.front();
    const bool goes_on = element.form == xml_element::kind::opening;
    xml_stream_parser::node made;
    made.status = goes_on ? xml_stream_parser::incomplete : xml_stream_parser::no_error;
    made.closing = element.form == xml_element::kind::closing;
    made.tag = element.tag;
    made.line = queue.line_of(queue.position());
    made.column = limited(queue.column());
    made.depth = limited(queue.depth());
    for (const xml_attribute& each : element.attributes) made.attributes.emplace_back(each.name, each.value.text());
    if (element.has_data()) made.data = queue.data();
    return made;
}

}  // namespace

struct xml_stream_parser::state
{
    state(const strings::ustring16& path, unsigned int option_word)
        : file(path), is_header_optional((option_word & header_optional) != 0)
    {
        if (!file.is_open()) error = file_not_found;
    }

    void parse()
    {
        error = fatal_error;  // remains if memory runs out
        handed_out.reset();
        xml_document document = check_document(file.read(), is_header_optional);
        const error_type outcome = error_of(document);
        fault_line = static_cast<unsigned long>(document.fault_line);
        queue = xml_element_queue(std::move(document));
        error = outcome;
    }

    bool is_front_handed_out() const
    {
        return !queue.empty() && handed_out != nullptr && handed_out_position == queue.position();
    }

    node next_node() { return queue.empty() ? node() : make_node(queue); }

    node& front()
    {
        if (!is_front_handed_out()) {
            handed_out = std::make_unique<node>(next_node());
            handed_out_position = queue.position();
        }
        return *handed_out;
    }

    node pop()
    {
        node popped = is_front_handed_out() ? std::move(*handed_out) : next_node();
        handed_out.reset();
        if (!queue.empty()) queue.pop();
        return popped;
    }

    text_file file;
    bool is_header_optional;
    error_type error = no_error;
    unsigned long fault_line = 0;
    xml_element_queue queue;
    std::unique_ptr<node> handed_out;  // the last front node that the host asked for and may have changed
    std::size_t handed_out_position = 0;
};

xml_element_queue& elements_of(xml_stream_parser& parser)
{
    xml_stream_parser::state& state = *parser.m_state;
    if (state.is_front_handed_out()) {
        const xml_stream_parser::node& node = *state.handed_out;
        xml_element& element = state.queue.change_front(node.line);
        element.tag = node.tag;
        element.texts = node.data.empty() ? 0 : 1;
        element.attributes.clear();
        for (const auto& [name, value] : node.attributes) element.attributes.push_back({name, {value, true}});
    }
    return state.queue;
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
    return m_state->front();
}

xml_stream_parser::node xml_stream_parser::node_queue_pop()
{
    return m_state->pop();
}

}  // namespace NUVEK_2_18::parser
