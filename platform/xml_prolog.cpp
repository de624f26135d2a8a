#include "platform/xml_prolog.h"

#include <algorithm>
#include <iterator>

#include "platform/xml_characters.h"
#include "platform/xml_markup.h"

namespace NUVEK_2_18::parser {

namespace {

bool is_digit(char character)
{
    return character >= '0' && character <= '9';
}

// VersionNum = '1.' [0-9]+
bool is_version(std::string_view version)
{
    return version.size() > 2 && version.substr(0, 2) == "1." &&
           std::all_of(version.begin() + 2, version.end(), is_digit);
}

// EncName = [A-Za-z] ([A-Za-z0-9._] | '-')*      the ASCII characters of a Name without the colon, not beginning with _
bool is_encoding_name(std::string_view name)
{
    return !name.empty() && is_byte(name.front(), name_start_byte) && name.front() != '_' &&
           std::all_of(name.begin(), name.end(), [](char byte) { return is_byte(byte, name_byte) && byte != ':'; });
}

bool is_yes_or_no(std::string_view value)
{
    return value == "yes" || value == "no";
}

// PubidChar*      a literal in apostrophes cannot contain an apostrophe
bool is_public_id(std::string_view id)
{
    constexpr std::string_view punctuation = " \n-'()+,./:=?;!*#@$_%";
    return std::all_of(id.begin(), id.end(), [&](char byte) {
        return is_digit(byte) || (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
               punctuation.find(byte) != std::string_view::npos;
    });
}

// pseudo-attribute = S name Eq quoted value. If another name comes next, takes nothing, leaves the value unchanged and
// returns true.
bool take_pseudo_attribute(xml_cursor& cursor, std::string_view name, bool (*is_valid)(std::string_view),
                           std::string_view& value)
{
    const char* const begin = cursor.at();
    cursor.skip_space();
    const bool has_space = cursor.at() != begin;
    if (!cursor.sees(name)) {
        cursor.go_to(begin);
        return true;
    }
    if (!has_space) return cursor.fail(xml_fault::missing_space);
    cursor.take(name);
    if (!cursor.take_equal()) return false;
    const char* const opening = cursor.at();
    std::string_view found;
    if (!cursor.take_quoted(found, xml_fault::missing_quote)) return false;
    if (!is_valid(found)) return cursor.fail_at(opening, xml_fault::bad_declaration);
    value = found;
    return true;
}

// ExternalID = 'SYSTEM' S SystemLiteral | 'PUBLIC' S PubidLiteral S SystemLiteral
bool take_external_id(xml_cursor& cursor)
{
    std::string_view literal;
    if (!cursor.take("SYSTEM")) {
        if (!cursor.take("PUBLIC", xml_fault::bad_doctype) || !cursor.take_space()) return false;
        const char* const opening = cursor.at();
        if (!cursor.take_quoted(literal, xml_fault::bad_doctype)) return false;
        if (!is_public_id(literal)) return cursor.fail_at(opening, xml_fault::bad_doctype);
    }
    return cursor.take_space() && cursor.take_quoted(literal, xml_fault::bad_doctype);
}

// elementdecl | AttlistDecl | EntityDecl | NotationDecl. It ends at the first '>' outside quotes.
bool take_markup_declaration(xml_cursor& cursor)
{
    constexpr std::string_view openings[] = {"<!ELEMENT", "<!ATTLIST", "<!ENTITY", "<!NOTATION"};
    const auto* const opening = std::find_if(std::begin(openings), std::end(openings),
                                             [&](std::string_view literal) { return cursor.sees(literal); });
    if (opening == std::end(openings)) return cursor.fail(xml_fault::bad_doctype);
    cursor.take(*opening);
    if (!cursor.take_space()) return false;
    for (;;) {
        cursor.go_to(find_first(cursor.at(), '<', '>', '"', '\''));
        if (*cursor == '>') return cursor.take(">");
        std::string_view literal;
        if (!cursor.take_quoted(literal, xml_fault::bad_doctype)) return false;
    }
}

// markupdecl | PEReference, where a markupdecl may be a comment or a processing instruction
bool take_subset_part(xml_cursor& cursor)
{
    std::string_view name;
    switch (next_construct(cursor)) {
        case construct::comment:
            return take_comment(cursor);
        case construct::instruction:
            return take_instruction(cursor);
        case construct::text:
            return cursor.take("%", xml_fault::bad_doctype) && cursor.take_name(name) &&
                   cursor.take(";", xml_fault::bad_doctype);
        default:
            return take_markup_declaration(cursor);
    }
}

// '[' intSubset ']', where intSubset = (markupdecl | PEReference | S)*
bool take_internal_subset(xml_cursor& cursor)
{
    cursor.take("[");
    for (cursor.skip_space(); *cursor != ']'; cursor.skip_space()) {
        if (!take_subset_part(cursor)) return false;
    }
    return cursor.take("]", xml_fault::bad_doctype);
}

}  // namespace

bool is_at_declaration(const xml_cursor& cursor)
{
    constexpr std::string_view opening = "<?xml";
    return cursor.sees(opening) && is_space(cursor.at()[opening.size()]);
}

// XMLDecl = '<?xml' VersionInfo EncodingDecl? SDDecl? S? '?>'
bool take_declaration(xml_cursor& cursor, std::string_view& encoding)
{
    std::string_view version;
    std::string_view standalone;
    if (!cursor.take("<?xml") || !take_pseudo_attribute(cursor, "version", is_version, version)) return false;
    if (version.empty()) return cursor.fail(xml_fault::bad_declaration);
    if (!take_pseudo_attribute(cursor, "encoding", is_encoding_name, encoding)) return false;
    if (!take_pseudo_attribute(cursor, "standalone", is_yes_or_no, standalone)) return false;
    cursor.skip_space();
    return cursor.take("?>", xml_fault::bad_declaration);
}

// doctypedecl = '<!DOCTYPE' S Name (S ExternalID)? S? ('[' intSubset ']' S?)? '>'
bool take_doctype(xml_cursor& cursor)
{
    std::string_view name;
    if (!cursor.take("<!DOCTYPE") || !cursor.take_space() || !cursor.take_name(name)) return false;
    cursor.skip_space();
    if ((cursor.sees("SYSTEM") || cursor.sees("PUBLIC")) && !take_external_id(cursor)) return false;
    cursor.skip_space();
    if (*cursor == '[' && !take_internal_subset(cursor)) return false;
    cursor.skip_space();
    return cursor.take(">", xml_fault::bad_doctype);
}

}  // namespace NUVEK_2_18::parser
