// xml_stream_parser: a strict, non-validating parser for XML 1.0 (fifth edition) that returns a file's elements as a
// queue of nodes, one at a time.
//
//     xml_stream_parser parser(u"maps.xml", xml_stream_parser::header_optional);
//     if (parser.parse() != xml_stream_parser::end_of_file) {
//         std::cerr << parser.error_line() << ": " << parser.error_text() << '\n';
//     }
//     while (!parser.node_queue_empty()) {
//         const xml_stream_parser::node node = parser.node_queue_pop();
//         std::cout << node.depth << ' ' << node.tag << '\n';
//     }
//
// The nodes of a document, in document order: an element without child elements is one node (status no_error, with its
// attributes and text); an element with children is a start node (status incomplete, with its attributes and the text
// before the first child), then its children's nodes, then a closing node (same tag, status no_error, no attributes,
// with the text after its children). Text that is all white space counts as none. Comments and processing instructions
// have no nodes. If there is a fault, or the input ends early, the queue holds the nodes of what precedes it; an
// element that is still open there has a start node with status incomplete, whether or not it has children.
//
// Encodings: UTF-8 with or without a BOM; UTF-16LE and UTF-16BE, recognised by the BOM or by the zero byte next to the
// first `<`; ISO-8859-1 and US-ASCII if the XML declaration names them. Nodes are in UTF-8. Line ends and attribute
// values are normalized as XML requires.
//
// A document type declaration is skipped and never applied: no entity, attribute type, default value or external file
// comes from it. Its overall syntax is checked; the declarations inside it are checked only for where they end. The
// only references are the five predefined entities and character references.
//
// Time: parse checks the document once and keeps a compact index of it; each node is made when it is asked for. All of
// it is linear in the document's size, and n log n in the attributes of one element. Nothing recurses.
//
// Memory: after parse, the document in UTF-8 and its index, 8 bytes for each element, attribute and run of text. For a
// file of maps the index takes about half the document's size; for `<a/>` repeated, twice; with tiny texts between tiny
// elements, at most four times. While parse runs, each open element takes 8 bytes more (24 in a document with text
// after a child element, and each run of such text 8), and the index and these lists take up to twice their size,
// because they double as they grow; the index keeps that. A document in UTF-16 keeps a buffer of one and a half times its
// size in the file. A document of 1 TiB or more is a std::length_error.
//
// Threads: a parser belongs to one thread at a time.
//
// Exceptions: none for any input below 1 TiB. Running out of memory is std::bad_alloc or std::length_error. If parse
// throws it, error() is fatal_error and there are no nodes. If a queue operation throws it, nothing is lost and the
// call can be repeated.
#pragma once

#include <cstdint>
#include <list>
#include <memory>
#include <utility>

#include "platform/ustring.h"

namespace NUVEK_2_18::parser {

struct xml_document;
class xml_element_queue;

class DATA_MAPPER4_API xml_stream_parser
{
public:
    // The state of a parser, and of a node. For missing_quote and missing_equal, the pseudo-attributes of the XML
    // declaration count as attributes. The value 2 is reserved: it is never reported.
    enum error_type : std::int32_t
    {
        no_error = 0,              // nothing to report; before parse, also: the file is open
        incomplete = 1,            // the input ended between two constructs with an element still open; not a failure
        end_of_file = 3,           // the document was read to its end and is complete
        end_tag_mismatch = 4,      // an end tag does not match the open element, or none is open
        attribute_redefined = 5,   // an attribute name occurs twice on one element
        unexpected_character = 6,  // any fault without a code of its own; ill-formed bytes; input that ends in markup
        missing_quote = 7,         // an attribute value has no opening quote, or no closing one before the input ends
        unknown_entity = 8,        // a reference to an entity other than lt, gt, amp, apos and quot
        missing_equal = 9,         // an attribute name is not followed by =
        fatal_error = 10,          // the encoding is unknown or contradicts the bytes, or reading failed; no nodes
        file_not_found = 11,       // no such regular file, or it cannot be opened
        no_xml_header = 12,        // the document has no XML declaration, and header_optional was not given
        no_root_tag = 13,          // the document has no element
    };

    // Bits of the constructor's options; others are ignored.
    enum option : unsigned int
    {
        header_optional = 2,  // the XML declaration may be missing
    };

    // An element, or one end of it.
    struct node
    {
        error_type status = no_error;  // incomplete on a start node, no_error on any other node
        bool closing = false;          // true on a closing node
        strings::ustring8 tag;
        unsigned long line = 0;    // of the tag's `<` (of the end tag's for a closing node), counted from 1
        std::uint32_t column = 0;  // of the same, in bytes of UTF-8, counted from 1; stops at the largest 32-bit value
        std::uint32_t depth = 0;   // the number of elements around this one, 0 for the root; stops likewise
        std::list<std::pair<strings::ustring8, strings::ustring8>> attributes;  // (name, value), in document order
        strings::ustring8 data;  // the element's text with CDATA sections and references resolved; empty if none
    };

    // Opens the file. error() is then no_error, or file_not_found if the path names no regular file or the file cannot
    // be opened. The path is opened as written if it names a regular file; otherwise with every backslash replaced by the
    // system's separator or, on Windows, with every slash replaced by a backslash. A path that is not valid UTF-16,
    // contains a zero or is longer than the system allows names no file.
    xml_stream_parser(const strings::ustring16& path, unsigned int options);
    ~xml_stream_parser();
    xml_stream_parser(const xml_stream_parser&) = delete;
    xml_stream_parser& operator=(const xml_stream_parser&) = delete;

    // The state of the parser: until parse is called, the result of opening the file; after that, the result of parse,
    // whatever has been taken off the queue since.
    const error_type& error();

    // Reads and checks the whole document and fills the queue. Returns end_of_file if the document is complete and
    // well-formed. Further calls do nothing and return the same result. Cost: linear in the document.
    const error_type& parse();

    // The line, counted from 1, of the fault that stopped parse: that of the unexpected character or of the end of the
    // input. 0 if there was no fault, and for incomplete and file_not_found. Cost: linear in the document.
    unsigned long error_line() const;

    // The column of the same place, in bytes of UTF-8, counted from 1; it stops at the largest value. 0 if the line is 0.
    unsigned long error_column() const;

    // Returns what is wrong there in a few words, such as "expected = after the attribute name"; empty if there was no
    // fault, and for incomplete and file_not_found. The text lives as long as the program, and may change with the version.
    const char* error_text() const;

    // Returns true if there are no nodes left.
    bool node_queue_empty() const;

    // Returns the next node and leaves it in the queue; it is valid until it is popped. If the queue is empty, returns
    // a default node, which is valid until the next call.
    node& node_queue_front();

    // Removes and returns the next node. If the queue is empty, returns a default node.
    node node_queue_pop();

private:
    struct state;

    // For the library itself.
    friend xml_element_queue& elements_of(xml_stream_parser& parser);
    friend std::unique_ptr<xml_stream_parser> make_parser(std::shared_ptr<const xml_document> document);
    std::unique_ptr<state> m_state;
};

}  // namespace NUVEK_2_18::parser
