#include "data_mapper/report/xml_findings.h"

#include <algorithm>
#include <iterator>

#include "data_mapper/report/nearest_name.h"
#include "data_mapper/report/wording.h"
#include "data_mapper/report/xml_vocabulary.h"
#include "platform/xml_cursor.h"

namespace data_mapper4 {

namespace {

using NUVEK_2_18::parser::text_of;
using NUVEK_2_18::parser::xml_cursor;
using NUVEK_2_18::parser::xml_document;
using NUVEK_2_18::parser::xml_element;
using NUVEK_2_18::parser::xml_fault;

class xml_finding
{
public:
    xml_finding(file_findings& findings, const xml_document& document, const std::vector<std::size_t>& open)
        : m_findings(findings), m_document(document), m_open(open), m_text(document.text.view())
    {
    }

    void add_unclosed()
    {
        m_findings.add(rule::unclosed_element, m_text.substr(m_text.size()), [&] {
            return finding_text{"the file ends before </" + escaped(open_tag()) + '>', {}, opened_here()};
        });
    }

    void add_fault()
    {
        switch (m_document.fault) {
            case xml_fault::end_tag_mismatch:
                return add_mismatch();
            case xml_fault::attribute_redefined:
                return add(rule::repeated_attribute, name_at(0),
                           "attribute " + in_quotes(name_at(0)) + " is given twice");
            case xml_fault::unknown_entity:
                return add_entity();
            case xml_fault::unknown_encoding:
                return add_encoding();
            case xml_fault::no_root:
                return add(rule::no_root, character(), "there is no element in this file",
                           "a file of maps begins with <maps>");
            case xml_fault::read_failed:
                return add(rule::unreadable_file, character(), text_of(m_document.fault));
            case xml_fault::not_utf8:
            case xml_fault::not_utf8_but_latin1:
            case xml_fault::not_utf8_but_windows:
            case xml_fault::not_utf16:
            case xml_fault::not_ascii:
            case xml_fault::forbidden_character:
                return add_character();
            default:
                return add_markup();
        }
    }

private:
    void add(rule broken, std::string_view part, const ustring8& message, const ustring8& hint = {},
             const std::vector<related_place>& related = {})
    {
        m_findings.add(broken, part, [&] { return finding_text{message, hint, related}; });
    }

    // The character at the fault; empty at the end of the text.
    std::string_view character() const
    {
        std::size_t size = m_document.fault_begin < m_text.size() ? 1 : 0;
        while (m_document.fault_begin + size < m_text.size() && size != 0 &&
               (m_text[m_document.fault_begin + size] & 0xC0) == 0x80) {
            ++size;
        }
        return m_text.substr(m_document.fault_begin, size);
    }

    // The name that begins this many bytes after the beginning of the fault.
    std::string_view name_at(std::size_t offset) const
    {
        std::string_view name;
        xml_cursor cursor(m_text.substr(m_document.fault_begin + offset));
        cursor.take_name(name);
        return name;
    }

    std::string_view open_tag() const { return m_document.index.name_at(m_open.back()); }

    std::vector<related_place> opened_here()
    {
        const std::string_view name = open_tag();
        return {m_findings.related(as_tag(name) + " is opened here", {name.data() - 1, name.size() + 1})};
    }

    // The cursor is at the `</`.
    void add_mismatch()
    {
        const std::string_view name = name_at(2);
        const ustring8 end_tag = "</" + escaped(name) + '>';
        const std::string_view part = m_text.substr(m_document.fault_begin, name.size() + 2);
        if (m_open.empty()) return add(rule::end_tag_mismatch, part, end_tag + " closes nothing: no element is open");
        // The start tag is misspelled, of which there is a finding already.
        const bool is_near = !nearest_name(open_tag(), {ustring8(name)}).empty();
        if (is_near && !is_known_tag(open_tag())) return;
        const std::vector<related_place> related = opened_here();
        const ustring8 line = std::to_string(related.front().where.line);
        add(rule::end_tag_mismatch, part,
            end_tag + " does not close " + as_tag(open_tag()) + ", opened at line " + line, mismatch_hint(name),
            related);
    }

    ustring8 mismatch_hint(std::string_view name) const
    {
        const ustring8 open(open_tag());
        const bool is_open = std::any_of(m_open.begin(), m_open.end(),
                                         [&](std::size_t each) { return m_document.index.name_at(each) == name; });
        if (open == "item" || open == "arg" || open == "include") return "write <" + open + " .../>";
        return is_open ? "write </" + escaped(open) + "> before it" : "write </" + escaped(open) + "> here, or nothing";
    }

    // The fault is at the `&`.
    void add_entity()
    {
        const std::string_view name = name_at(1);
        const int known = code_point_of_entity(name);
        ustring8 message = "unknown entity &" + escaped(name) + ';';
        if (known != 0) message += "; write &#" + std::to_string(known) + ';';
        add(rule::unknown_entity, m_text.substr(m_document.fault_begin, name.size() + 2), message,
            known != 0 ? "" : "XML knows only &lt; &gt; &amp; &quot; and &apos;");
    }

    // The text ends after the encoding's name.
    void add_encoding()
    {
        const std::string_view name = m_text.substr(m_text.find_last_of("'\"") + 1);
        if (is_known_encoding(name)) {
            add(rule::bad_encoding, name, "the file declares the encoding " + in_quotes(name) + " but is not in it",
                "declare the encoding in which the file is saved");
            return;
        }
        const ustring8 near = nearest_encoding(name);
        add(rule::bad_encoding, name,
            "the encoding " + in_quotes(name) + " is not supported" +
                did_you_mean(near.empty() ? near : in_quotes(near)),
            near.empty() ? "convert the file to UTF-8" : "");
    }

    void add_character()
    {
        ustring8 message = text_of(m_document.fault);
        ustring8 hint;
        if (m_document.fault == xml_fault::not_utf8_but_latin1) {
            message += "; if the file is Latin-1, declare encoding=\"ISO-8859-1\"";
        } else if (m_document.fault == xml_fault::not_utf8_but_windows) {
            message += "; the file looks like windows-1252 and must be converted to UTF-8";
        } else if (m_document.fault == xml_fault::not_ascii) {
            message += ", although the file declares US-ASCII";
        }
        add(rule::bad_character, m_text.substr(m_text.size()), message, hint);
    }

    void add_markup()
    {
        const std::string_view before = m_text.substr(0, m_document.fault_begin);
        switch (m_document.fault) {
            case xml_fault::end_inside_markup:
                return add(rule::bad_markup, m_text.substr(m_document.sound_size, opening_size()),
                           "this " + ustring8(opening_kind()) + " is not closed before the end of the file");
            case xml_fault::bare_ampersand:
            case xml_fault::missing_semicolon:
                return add(rule::bad_markup, m_text.substr(before.rfind('&'), 1), text_of(m_document.fault),
                           "for the character itself write &amp;");
            case xml_fault::less_than_in_value:
                if (const std::size_t quote = open_quote(); before.find('\n', quote) != std::string_view::npos) {
                    return add(rule::bad_markup, m_text.substr(quote, 1), "the quote is not closed in this line");
                }
                break;
            default:
                break;
        }
        add(rule::bad_markup, character(), text_of(m_document.fault), markup_hint());
    }

    // What begins before the end of the text and is not finished there.
    std::string_view opening() const { return m_text.substr(m_document.sound_size); }
    bool opens(std::string_view markup) const { return opening().substr(0, markup.size()) == markup; }
    std::size_t opening_size() const { return opens("<!--") ? 4 : std::min<std::size_t>(opening().size(), 2); }
    const char* opening_kind() const
    {
        if (opens("<!--")) return "comment";
        if (opens("<![")) return "CDATA section";
        if (opens("<?")) return "processing instruction";
        return opens("<!") ? "declaration" : opens("&") ? "reference" : "tag";
    }

    // The place of the quote that opens the value in which the fault is.
    std::size_t open_quote() const
    {
        xml_cursor cursor(m_text.substr(m_document.sound_size + 1));
        const char* const fault = m_text.data() + m_document.fault_begin;
        const char* quote = cursor.at();
        std::string_view name;
        for (cursor.take_name(name); cursor.at() < fault; cursor.take_quoted(name, xml_fault::missing_quote)) {
            cursor.skip_space();
            cursor.take_name(name);
            cursor.take_equal();
            quote = cursor.at();
            if (cursor.is_at_end()) break;
        }
        return static_cast<std::size_t>(quote - m_text.data());
    }

    const char* markup_hint() const
    {
        const char before = m_document.fault_begin == 0 ? ' ' : m_text[m_document.fault_begin - 1];
        switch (m_document.fault) {
            case xml_fault::bare_less_than:
                if (character() == " ") return "nothing may come between < and the name of a tag";
                return "for the character itself write &lt;";
            case xml_fault::less_than_in_value:
                return "for the character itself write &lt;";
            case xml_fault::bad_tag_end:
            case xml_fault::missing_space:
                return before == '"' || before == '\'' ? "a quote may be missing or misplaced before it" : "";
            case xml_fault::missing_quote:
                return "write attributes as name=\"value\"";
            case xml_fault::text_outside_root:
                return "a file of maps begins with <maps>";
            case xml_fault::second_root:
                return "everything belongs between <maps> and </maps>";
            case xml_fault::late_declaration:
                return "remove what precedes it, white space included";
            default:
                return "";
        }
    }

    file_findings& m_findings;
    const xml_document& m_document;
    const std::vector<std::size_t>& m_open;
    std::string_view m_text;
};

}  // namespace

std::vector<std::size_t> left_open(const xml_document& document)
{
    std::vector<std::size_t> open;
    if (document.is_complete) return open;
    xml_element element;
    for (std::size_t position = 0; position != document.index.size();) {
        const std::size_t next = document.index.read(position, element);
        if (element.form == xml_element::kind::opening) open.push_back(position);
        if (element.form == xml_element::kind::closing) open.pop_back();
        position = next;
    }
    return open;
}

void add_xml_finding(file_findings& findings, const xml_document& document, const std::vector<std::size_t>& open)
{
    xml_finding finding(findings, document, open);
    if (document.fault != xml_fault::none) {
        finding.add_fault();
    } else if (!document.is_complete) {
        finding.add_unclosed();
    }
}

}  // namespace data_mapper4
