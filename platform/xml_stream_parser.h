// xml_stream_parser: a strict, non-validating reader of XML 1.0 (fifth edition) that hands out a file's elements as a
// queue of nodes, one at a time.
//
//     xml_stream_parser parser(u"maps.xml", xml_stream_parser::header_optional);
//     if (parser.parse() != xml_stream_parser::end_of_file) report(parser.error(), parser.error_line());
//     while (!parser.node_queue_empty()) {
//         const xml_stream_parser::node node = parser.node_queue_pop();
//         ...
//     }
//
// The nodes of a document, in document order: an element without child elements is one node (status no_error, with its
// attributes and text); an element with children is a start node (status incomplete, with its attributes and the text
// before the first child), then its children's nodes, then a closing node (same tag, status no_error, no attributes,
// with the text behind its children). Text of nothing but white space counts as none. Comments and processing
// instructions yield nothing. After a fault, or where the input ends early, the queue holds the nodes of what came
// before; an element still open there has a start node with status incomplete, whether or not it has children.
//
// Encodings: UTF-8 with or without a byte order mark; UTF-16 of either byte order, told by its mark or by the zero byte
// beside the first `<`; ISO-8859-1 and US-ASCII where the XML header declares them. Nodes carry UTF-8, line ends and
// attribute values normalised as XML has it.
//
// A document type declaration is read past and never applied: no entity, attribute type, default value or outside file
// comes from it. Its outer shape is checked, and of the declarations inside it only where they end. The references
// known are the five predefined entities and character references.
//
// Cost: parse reads the document once and keeps no nodes; a node is made when it is asked for. Memory is the document
// plus what is open; time grows linearly with the document's size (attribute names on one element: n log n), and
// nothing recurses.
//
// Threads: a parser belongs to one thread at a time. Exceptions: none for any input; a shortage of memory surfaces as
// std::bad_alloc or std::length_error; it may end the queue if it is met while a node is made.
#pragma once

#include <cstdint>
#include <list>
#include <memory>
#include <utility>

#include "platform/ustring.h"

namespace NUVEK_2_18::parser {

class xml_element_queue;

class DATA_MAPPER4_API xml_stream_parser
{
public:
    enum error_type : std::int32_t
    {
        no_error = 0,    // nothing to report; before parse also: the file is open
        incomplete = 1,  // the input ended between constructs with an element still open; not a failure
        // 2 is reserved: never reported
        end_of_file = 3,           // the document was read to its end and is complete
        end_tag_mismatch = 4,      // an end tag does not match the open element, or none is open
        attribute_redefined = 5,   // an attribute name occurs twice on one element
        unexpected_character = 6,  // any fault without a code of its own; ill-formed bytes; input ending inside markup
        missing_quote = 7,         // an attribute value is not opened, or not closed before the input ends
        unknown_entity = 8,        // a reference to an entity other than lt, gt, amp, apos and quot
        missing_equal = 9,         // an attribute name is not followed by =
        fatal_error = 10,          // an encoding is unknown or contradicted by the bytes; or reading failed: no nodes
        file_not_found = 11,       // no such regular file, or it cannot be opened
        no_xml_header = 12,        // the document does not begin with an XML header, and option 2 was not given
        no_root_tag = 13,          // the document holds no element
        // For missing_quote and missing_equal the settings of the XML header count as attributes.
    };

    // Bits of the constructor's option word; others are ignored.
    enum option : unsigned int
    {
        header_optional = 2,  // a document may begin without an XML header
    };

    struct node
    {
        error_type status = no_error;  // incomplete on a start node whose element goes on, no_error on any other node
        bool closing = false;          // true on a closing node
        strings::ustring8 tag;
        unsigned long line = 0;    // of the tag's `<` (a closing node: of its end tag's), counted from 1
        std::uint32_t column = 0;  // of the same, in bytes of UTF-8 from 1; stops at the largest 32-bit value
        std::uint32_t depth = 0;   // number of elements open around the element, 0 at the root
        std::list<std::pair<strings::ustring8, strings::ustring8>> attributes;  // (name, value), in document order
        strings::ustring8 data;  // the element's text, CDATA sections and references resolved; empty when it has none
    };

    // Opens the file; error() is then no_error, or file_not_found unless the path names a regular file that can be
    // opened. The path is opened as written. Where no such file exists and the system's own separator is not the
    // backslash, it is tried once more with every backslash taken as that separator. A path that is not valid UTF-16
    // names no file.
    xml_stream_parser(const strings::ustring16& path, unsigned int options);
    ~xml_stream_parser();
    xml_stream_parser(const xml_stream_parser&) = delete;
    xml_stream_parser& operator=(const xml_stream_parser&) = delete;

    // The state: of the opening until parse is called, of the whole document from then on, whatever was taken off the
    // queue since.
    const error_type& error();

    // Reads and checks the whole document and fills the queue; end_of_file when all is well. Further calls do nothing
    // and give the same answer. Cost: linear in the document.
    const error_type& parse();

    // The line, from 1, at which a fault stopped parse: where the unexpected character stands or the input ended. 0
    // when there was no fault, for incomplete and for file_not_found.
    unsigned long error_line() const;

    // True when no node is waiting.
    bool node_queue_empty() const;

    // The next node, left in the queue; valid until it is popped. With an empty queue: a default node.
    node& node_queue_front();

    // Removes the next node and gives it. With an empty queue: a default node.
    node node_queue_pop();

private:
    struct state;
    friend xml_element_queue& elements_of(xml_stream_parser& parser);  // for the library's tables
    std::unique_ptr<state> m_state;
};

}  // namespace NUVEK_2_18::parser
