// Reads arbitrary bytes as a document: the parser must not crash, its nodes must nest, and the result and the nodes
// must be the same as expat's, unless may_differ says that they may differ.
#include <iconv.h>
#include <strings.h>

#include <algorithm>

#include "expat_nodes.h"
#include "memory_file.h"

namespace {

using expat_nodes::node;
using expat_nodes::reading;
using expat_nodes::xml_stream_parser;
using nodes = std::vector<node>;

constexpr int file_number = 200;

// Checks that every closing node has the tag of the innermost open start node, and that lines never decrease. Returns
// the number of elements that stay open.
std::size_t check_nesting(const nodes& found)
{
    std::vector<std::string> open;
    unsigned long line = 1;
    for (const node& each : found) {
        require(each.line >= line && !each.tag.empty());
        line = each.line;
        if (each.closing) {
            require(!open.empty() && open.back() == each.tag && each.status == xml_stream_parser::no_error);
            open.pop_back();
        }
        require(each.depth == open.size());
        if (each.status == xml_stream_parser::incomplete) open.push_back(each.tag);
    }
    return open.size();
}

// If there is a fault, each parser may have returned any part of the text before it.
bool are_same(const nodes& ours, const nodes& theirs, bool are_complete, bool are_columns_bytes)
{
    const auto is_same = [&](const node& a, const node& b) {
        return a.status == b.status && a.closing == b.closing && a.tag == b.tag && a.line == b.line &&
               a.depth == b.depth && a.attributes == b.attributes && (!are_columns_bytes || a.column == b.column) &&
               (a.data == b.data || (!are_complete && &a == &ours.back()));
    };
    return std::equal(ours.begin(), ours.end(), theirs.begin(), theirs.end(), is_same);
}

// Returns nullptr if the bytes are not UTF-16; expat recognises other encodings itself.
const char* utf16_name(std::string_view bytes)
{
    if (bytes.size() < 2) return nullptr;
    if (bytes.substr(0, 2) == "\xFF\xFE" || bytes[1] == '\0') return "UTF-16LE";
    return bytes.substr(0, 2) == "\xFE\xFF" || bytes[0] == '\0' ? "UTF-16BE" : nullptr;
}

// Returns the text in UTF-8. The first ill-formed unit or zero and everything after it are replaced by a byte that is
// never valid, because expat's own conversion accepts some ill-formed units, and expat takes a text that has a zero at its
// beginning for UTF-16, whatever it is told.
std::string utf8_of(std::string_view utf16, const char* encoding)
{
    std::string from(utf16);
    std::string text(utf16.size() * 2, '\0');
    char* next = from.data();
    char* end = text.data();
    std::size_t unread = from.size();
    std::size_t unused = text.size();
    const iconv_t converter = iconv_open("UTF-8", encoding);
    const bool is_well_formed = iconv(converter, &next, &unread, &end, &unused) == 0;
    iconv_close(converter);
    text.resize(text.size() - unused);
    const std::string sound = text.substr(0, text.find('\0'));
    return is_well_formed && sound == text ? sound : sound + '\xFF';
}

// True for the name characters of XML's fifth edition that an earlier edition may not allow. UTF-8 sorts like code
// points, so a text begins with a character of a range if it sorts between the ends of the range.
bool begins_with_new_name_character(std::string_view text)
{
    constexpr std::string_view ranges[][2] = {
        {"\u0100", "\u037E"}, {"\u037F", "\xE0"},         {"\u0800", "\u2000"},        {"\u200C", "\u200E"},
        {"\u203F", "\u2041"}, {"\u2070", "\u2190"},       {"\u2C00", "\u2FF0"},        {"\u3001", "\xED\xA0"},
        {"\uF900", "\uFDD0"}, {"\uFDF0", "\xEF\xBF\xBE"}, {"\U00010000", "\U000F0000"}};
    return std::any_of(std::begin(ranges), std::end(ranges),
                       [=](const auto& range) { return text >= range[0] && text < range[1]; });
}

// True where expat and this parser differ on purpose.
bool may_differ(std::string_view bytes, xml_stream_parser::error_type outcome, const reading& theirs)
{
    // Expat applies a document type, checks what is in it, and accepts undeclared entities if they may be declared
    // elsewhere. This parser skips it.
    if (theirs.is_in_doctype || (theirs.has_doctype && outcome == xml_stream_parser::unknown_entity)) return true;
    // Expat knows only the names of the fourth edition.
    if (theirs.error == XML_ERROR_INVALID_TOKEN && begins_with_new_name_character(bytes.substr(theirs.error_byte)))
        return true;
    // Expat accepts some encodings that the bytes contradict,
    if (outcome == xml_stream_parser::fatal_error) return true;
    if (outcome == xml_stream_parser::end_of_file || outcome == xml_stream_parser::incomplete) return false;
    // in ISO-8859-1 three letters that no edition allows in names, and versions of any form.
    const bool is_latin1 = !theirs.encoding.empty() && (theirs.encoding[0] | 0x20) != 'u';
    const bool is_number = theirs.version.size() > 2 && theirs.version.compare(0, 2, "1.") == 0 &&
                           theirs.version.find_first_not_of("0123456789", 2) == std::string::npos;
    return (is_latin1 && bytes.find_first_of("\xAA\xB5\xBA") != std::string_view::npos) || !is_number;
}

void compare(std::string_view bytes, xml_stream_parser::error_type outcome, const nodes& found)
{
    const char* const utf16 = utf16_name(bytes);
    const std::string text = utf16 != nullptr ? utf8_of(bytes, utf16) : std::string(bytes);
    const reading theirs = expat_nodes::read(text, utf16 != nullptr ? "UTF-8" : nullptr);
    if (may_differ(text, outcome, theirs)) return;
    const bool is_whole = theirs.is_accepted() || theirs.is_incomplete();
    require((outcome == xml_stream_parser::end_of_file) == theirs.is_accepted());
    require((outcome == xml_stream_parser::incomplete) == theirs.is_incomplete());
    if (theirs.error == XML_ERROR_TAG_MISMATCH) require(outcome == xml_stream_parser::end_tag_mismatch);
    if (theirs.error == XML_ERROR_UNDEFINED_ENTITY) require(outcome == xml_stream_parser::unknown_entity);
    if (is_whole && utf16 != nullptr && !theirs.encoding.empty()) {
        const char* const declared = theirs.encoding.c_str();
        require(strcasecmp(declared, "UTF-16") == 0 || strcasecmp(declared, utf16) == 0);
    }
    // Expat's attribute values depend on the declared types.
    if (theirs.has_doctype && text.find("ATTLIST") != std::string::npos) return;
    const bool is_ascii = std::all_of(text.begin(), text.end(), [](char each) { return (each & 0x80) == 0; });
    require(are_same(found, theirs.nodes, is_whole, is_ascii));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    write_memory_file(file_number, bytes);
    const std::string path = "/proc/self/fd/" + std::to_string(file_number);
    xml_stream_parser parser(NUVEK_2_18::strings::utf8_to_utf16(path), xml_stream_parser::header_optional);
    require(parser.error() == xml_stream_parser::no_error);
    const xml_stream_parser::error_type outcome = parser.parse();
    nodes found;
    while (!parser.node_queue_empty()) found.push_back(parser.node_queue_pop());
    const std::size_t open = check_nesting(found);
    const bool has_fault = outcome != xml_stream_parser::end_of_file && outcome != xml_stream_parser::incomplete;
    require(has_fault || (outcome == xml_stream_parser::incomplete) == (open != 0));
    require(outcome != xml_stream_parser::fatal_error || found.empty());
    require(has_fault ? parser.error_line() >= (found.empty() ? 1 : found.back().line) : parser.error_line() == 0);
    require(parser.parse() == outcome && parser.error() == outcome);
    compare(bytes, outcome, found);
    return 0;
}
