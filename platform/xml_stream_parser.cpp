#include "platform/xml_stream_parser.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <limits>
#include <utility>

#include "platform/byte_runs.h"
#include "platform/parser_elements.h"
#include "platform/text_file.h"
#include "platform/xml_document.h"
#include "platform/xml_element_queue.h"

namespace NUVEK_2_18::parser {

namespace {

struct public_fault
{
    xml_stream_parser::error_type code;
    const char* text;
};

// In the order of xml_fault.
constexpr public_fault faults[] = {
    {xml_stream_parser::no_error, ""},
    {xml_stream_parser::end_tag_mismatch, "the end tag does not match the open element"},
    {xml_stream_parser::attribute_redefined, "an attribute is given twice"},
    {xml_stream_parser::missing_quote, "expected a quote around the attribute value"},
    {xml_stream_parser::unknown_entity, "unknown entity"},
    {xml_stream_parser::missing_equal, "expected = after the attribute name"},
    {xml_stream_parser::fatal_error, "the encoding is not supported, or is not that of the file"},
    {xml_stream_parser::fatal_error, "the file cannot be read"},
    {xml_stream_parser::fatal_error, "the file is too large"},
    {xml_stream_parser::no_xml_header, "the XML declaration is missing"},
    {xml_stream_parser::no_root_tag, "there is no element"},
    {xml_stream_parser::unexpected_character, "unexpected character"},
    {xml_stream_parser::unexpected_character, "bytes that are not UTF-8"},
    {xml_stream_parser::unexpected_character, "bytes that are not UTF-8"},
    {xml_stream_parser::unexpected_character, "bytes that are not UTF-8"},
    {xml_stream_parser::unexpected_character, "bytes that are not UTF-16"},
    {xml_stream_parser::unexpected_character, "a byte that is not ASCII"},
    {xml_stream_parser::unexpected_character, "a character that XML does not allow"},
    {xml_stream_parser::unexpected_character, "the file ends inside markup"},
    {xml_stream_parser::unexpected_character, "expected a name"},
    {xml_stream_parser::unexpected_character, "< does not begin a tag here"},
    {xml_stream_parser::unexpected_character, "expected > at the end of the tag"},
    {xml_stream_parser::unexpected_character, "expected white space"},
    {xml_stream_parser::unexpected_character, "< is not allowed in an attribute value"},
    {xml_stream_parser::unexpected_character, "& does not begin a reference here"},
    {xml_stream_parser::unexpected_character, "expected ; at the end of the reference"},
    {xml_stream_parser::unexpected_character, "the reference is not to a character of XML"},
    {xml_stream_parser::unexpected_character, "]]> is not allowed in text"},
    {xml_stream_parser::unexpected_character, "-- is not allowed in a comment"},
    {xml_stream_parser::unexpected_character, "a processing instruction must not be called xml"},
    {xml_stream_parser::unexpected_character, "an XML declaration must be the first thing in the file"},
    {xml_stream_parser::unexpected_character, "text outside the root element"},
    {xml_stream_parser::unexpected_character, "a second root element"},
    {xml_stream_parser::unexpected_character, "a document type declaration that is faulty or out of place"},
    {xml_stream_parser::unexpected_character, "a faulty XML declaration"},
};
static_assert(std::size(faults) == static_cast<std::size_t>(xml_fault::bad_declaration) + 1);

const public_fault& fault_of(const xml_document& document)
{
    return faults[static_cast<std::size_t>(document.fault)];
}

xml_stream_parser::error_type error_of(const xml_document& document)
{
    if (document.fault != xml_fault::none) return fault_of(document).code;
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
        : file(std::make_unique<text_file>(path)), is_header_optional((option_word & header_optional) != 0)
    {
        if (!file->is_open()) error = file_not_found;
    }

    explicit state(std::shared_ptr<const xml_document> read) : document(std::move(read))
    {
        if (document == nullptr) error = file_not_found;
    }

    void parse()
    {
        error = fatal_error;  // remains if memory runs out
        handed_out.reset();
        if (document == nullptr) {
            document = std::make_shared<xml_document>(check_document(file->read(), is_header_optional));
        }
        queue = xml_element_queue(document);
        error = error_of(*document);
    }

    // Null if there is none.
    const xml_document* faulty_document() const
    {
        const bool is_parsed = error != no_error && document != nullptr;
        return is_parsed && document->fault != xml_fault::none ? document.get() : nullptr;
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

    std::unique_ptr<text_file> file;  // null if the document has been read already
    bool is_header_optional = true;
    std::shared_ptr<const xml_document> document;  // null until it is read
    error_type error = no_error;
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

std::unique_ptr<xml_stream_parser> make_parser(std::shared_ptr<const xml_document> document)
{
    auto parser = std::make_unique<xml_stream_parser>(strings::ustring16(), 0U);  // of no file
    parser->m_state = std::make_unique<xml_stream_parser::state>(std::move(document));
    return parser;
}

const char* text_of(xml_fault fault)
{
    return faults[static_cast<std::size_t>(fault)].text;
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
    const xml_document* const document = m_state->faulty_document();
    if (document == nullptr) return 0;
    const char* const text = document->text.view().data();
    return static_cast<unsigned long>(1 + count_lines(text, text + document->fault_begin));
}

unsigned long xml_stream_parser::error_column() const
{
    const xml_document* const document = m_state->faulty_document();
    if (document == nullptr) return 0;
    const std::string_view before = document->text.view().substr(0, document->fault_begin);
    return limited(before.size() - (before.rfind('\n') + 1) + 1);
}

const char* xml_stream_parser::error_text() const
{
    const xml_document* const document = m_state->faulty_document();
    return document == nullptr ? "" : text_of(document->fault);
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
