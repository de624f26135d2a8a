// Any bytes at all, read as a document: no crash, nodes that nest, and the verdict and the nodes that expat comes to,
// but for the differences below.
#include <algorithm>
#include <utility>

#include "expat_nodes.h"
#include "memory_file.h"

namespace {

using expat_nodes::reading;
using expat_nodes::xml_stream_parser;
using nodes = std::vector<xml_stream_parser::node>;

nodes take_nodes(xml_stream_parser& parser)
{
    nodes taken;
    while (!parser.node_queue_empty()) taken.push_back(parser.node_queue_pop());
    return taken;
}

// Every closing node has the tag of the innermost start node still open, and no line decreases. Gives what stays open.
std::size_t check_nesting(const nodes& found)
{
    std::vector<std::string> open;
    unsigned long line = 1;
    for (const xml_stream_parser::node& node : found) {
        require(node.line >= line && !node.tag.empty());
        line = node.line;
        if (node.closing) {
            require(!open.empty() && open.back() == node.tag && node.status == xml_stream_parser::no_error);
            open.pop_back();
        }
        require(node.depth == open.size());
        if (node.status == xml_stream_parser::incomplete) open.push_back(node.tag);
    }
    return open.size();
}

bool is_plain(char byte)
{
    return static_cast<unsigned char>(byte - 1) < 0x7F;
}

// Where one of them stopped, the text before that place may have been given up to any point.
bool are_same(const nodes& ours, const nodes& theirs, bool are_complete, bool are_columns_bytes)
{
    const auto is_same = [&](const xml_stream_parser::node& a, const xml_stream_parser::node& b) {
        return a.status == b.status && a.closing == b.closing && a.tag == b.tag && a.line == b.line &&
               a.depth == b.depth && a.attributes == b.attributes && (!are_columns_bytes || a.column == b.column) &&
               (a.data == b.data || (!are_complete && &a == &ours.back()));
    };
    return std::equal(ours.begin(), ours.end(), theirs.begin(), theirs.end(), is_same);
}

enum class pairs
{
    none,
    little_endian,
    big_endian,
};

pairs order_of(std::string_view bytes)
{
    if (bytes.size() < 2) return pairs::none;
    if (bytes.substr(0, 2) == "\xFF\xFE" || bytes[1] == '\0') return pairs::little_endian;
    return bytes.substr(0, 2) == "\xFE\xFF" || bytes[0] == '\0' ? pairs::big_endian : pairs::none;
}

// The character at the place in a document of UTF-16 or, without pairs, of UTF-8; 0 where none stands.
char32_t character_at(std::string_view bytes, std::size_t at, pairs order)
{
    const auto byte = [&](std::size_t i) { return i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0U; };
    const auto unit = [&](std::size_t i) {
        return order == pairs::big_endian ? byte(i) << 8 | byte(i + 1) : byte(i + 1) << 8 | byte(i);
    };
    if (order != pairs::none) {
        const bool is_high = unit(at) >> 10 == 0x36 && unit(at + 2) >> 10 == 0x37;
        return is_high ? 0x10000 + ((unit(at) & 0x3FF) << 10 | (unit(at + 2) & 0x3FF)) : unit(at);
    }
    const unsigned first = byte(at);
    const unsigned rest = first < 0xC0 ? 0 : first < 0xE0 ? 1 : first < 0xF0 ? 2 : 3;
    char32_t character = rest == 0 ? first : first & (0x3FU >> rest);
    for (std::size_t i = 1; i <= rest; ++i) character = character << 6 | (byte(at + i) & 0x3F);
    return character;
}

// Of the name characters of the fifth edition those that an earlier one may not know.
bool is_new_name_character(char32_t character)
{
    constexpr std::pair<char32_t, char32_t> ranges[] = {
        {0x100, 0x2FF},   {0x300, 0x37D},   {0x37F, 0x1FFF},  {0x200C, 0x200D}, {0x203F, 0x2040},  {0x2070, 0x218F},
        {0x2C00, 0x2FEF}, {0x3001, 0xD7FF}, {0xF900, 0xFDCF}, {0xFDF0, 0xFFFD}, {0x10000, 0xEFFFF}};
    return std::any_of(std::begin(ranges), std::end(ranges), [=](const std::pair<char32_t, char32_t>& range) {
        return character >= range.first && character <= range.second;
    });
}

bool is_sound_utf16(std::string_view bytes, pairs order)
{
    for (std::size_t i = 0; i < bytes.size(); i += 2) {
        const char32_t character = character_at(bytes, i, order);
        if (character >= 0xD800 && character <= 0xDFFF) return false;
        if (character >= 0x10000) i += 2;
    }
    return bytes.size() % 2 == 0;
}

bool is_version(std::string_view version)
{
    return version.size() > 2 && version.substr(0, 2) == "1." &&
           version.find_first_not_of("0123456789", 2) == std::string_view::npos;
}

// Where the two must not be compared.
bool may_differ(std::string_view bytes, xml_stream_parser::error_type outcome, const reading& theirs)
{
    const pairs order = order_of(bytes);
    // A document type is applied by expat, which also checks what stands in it, and lets undeclared entities be where
    // they may be declared elsewhere. Here it is read past.
    if (theirs.is_in_doctype || (theirs.has_doctype && outcome == xml_stream_parser::unknown_entity)) return true;
    // Names are those of the fourth edition in expat.
    if (theirs.error == XML_ERROR_INVALID_TOKEN && is_new_name_character(character_at(bytes, theirs.error_byte, order)))
        return true;
    // Some encodings that the bytes contradict pass in expat.
    if (outcome == xml_stream_parser::fatal_error) return true;
    if (outcome == xml_stream_parser::end_of_file || outcome == xml_stream_parser::incomplete) return false;
    // So do, in two encodings, three letters that no edition has in names,
    const bool is_utf8 = order == pairs::none && (theirs.encoding.empty() || (theirs.encoding[0] | 0x20) == 'u');
    if (!is_utf8 && bytes.find_first_of("\xAA\xB5\xBA") != std::string_view::npos) return true;
    // a surrogate or a byte without its other half, and versions of any form.
    return (order != pairs::none && !is_sound_utf16(bytes, order)) || !is_version(theirs.version);
}

void compare(std::string_view bytes, xml_stream_parser::error_type outcome, const nodes& found)
{
    const reading theirs = expat_nodes::reader().read(bytes);
    if (may_differ(bytes, outcome, theirs)) return;
    require((outcome == xml_stream_parser::end_of_file) == theirs.is_accepted());
    require((outcome == xml_stream_parser::incomplete) == theirs.is_incomplete());
    if (theirs.error == XML_ERROR_TAG_MISMATCH) require(outcome == xml_stream_parser::end_tag_mismatch);
    if (theirs.error == XML_ERROR_UNDEFINED_ENTITY) require(outcome == xml_stream_parser::unknown_entity);
    // The type of an attribute changes its value, and has no effect here.
    if (theirs.has_attribute_types) return;
    const bool are_columns_bytes = std::all_of(bytes.begin(), bytes.end(), is_plain);
    require(are_same(found, theirs.nodes, theirs.is_accepted() || theirs.is_incomplete(), are_columns_bytes));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const memory_file file(200);
    const std::string_view bytes = text_of(data, size);
    file.write(bytes);

    xml_stream_parser parser(NUVEK_2_18::strings::utf8_to_utf16(file.path()), xml_stream_parser::header_optional);
    require(parser.error() == xml_stream_parser::no_error);
    const xml_stream_parser::error_type outcome = parser.parse();
    const nodes found = take_nodes(parser);
    const std::size_t open = check_nesting(found);
    const bool has_fault = outcome != xml_stream_parser::end_of_file && outcome != xml_stream_parser::incomplete;
    require(outcome != xml_stream_parser::end_of_file || open == 0);
    require(outcome != xml_stream_parser::incomplete || open != 0);
    require(outcome != xml_stream_parser::fatal_error || found.empty());
    require(has_fault ? parser.error_line() >= (found.empty() ? 1 : found.back().line) : parser.error_line() == 0);
    require(parser.parse() == outcome && parser.error() == outcome);
    compare(bytes, outcome, found);
    return 0;
}
