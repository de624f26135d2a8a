#include "platform/xml_document.h"

#include <string_view>
#include <vector>

#include "platform/xml_scanner.h"

namespace NUVEK_2_18::parser {

namespace {

using construct = xml_scanner::construct;

class document_checker
{
public:
    explicit document_checker(const document_text& document)
        : m_scanner(document.text, document.fault_at_end), m_fault_at_end(document.fault_at_end)
    {
    }

    // document = XMLDecl? Misc* (doctypedecl Misc*)? element Misc*
    checked_document check(bool header_optional)
    {
        if (!take_header(header_optional)) return outcome();
        for (construct next = m_scanner.ahead(); next != construct::end; next = m_scanner.ahead()) {
            m_begin = m_scanner.position();
            if (!take(next)) return outcome();
        }
        m_begin = m_scanner.position();
        end();
        return outcome();
    }

private:
    bool is_outside() const { return m_open.empty(); }

    checked_document outcome() const { return {m_outcome, m_begin, m_position, m_nodes}; }

    bool report(xml_stream_parser::error_type code, std::size_t position)
    {
        m_outcome = code;
        m_position = position;
        return false;
    }

    bool refuse() { return report(xml_stream_parser::unexpected_character, m_begin); }

    // Passes on what a take of the scanner said.
    bool taken(bool is_sound) { return is_sound || report(m_scanner.fault(), m_scanner.position()); }

    bool take_header(bool header_optional)
    {
        if (m_scanner.at_declaration()) return taken(m_scanner.take_declaration());
        if (header_optional) return true;
        // Where not even the first character could be read, it is not known what the document begins with.
        const bool is_unread = m_scanner.ahead() == construct::end && m_fault_at_end != xml_stream_parser::no_error;
        return report(is_unread ? m_fault_at_end : xml_stream_parser::no_xml_header, 0);
    }

    bool take(construct next)
    {
        switch (next) {
            case construct::start_tag:
                return take_start_tag();
            case construct::end_tag:
                return take_end_tag();
            case construct::text:
                return taken(is_outside() ? m_scanner.take_blank() : m_scanner.take_text());
            case construct::cdata:
                return is_outside() ? refuse() : taken(m_scanner.take_cdata());
            case construct::comment:
                return taken(m_scanner.take_comment());
            case construct::instruction:
                return taken(m_scanner.take_instruction());
            case construct::doctype:
                return take_doctype();
            case construct::end:
                break;
        }
        return true;
    }

    bool take_start_tag()
    {
        if (is_outside() && m_has_root) return refuse();
        if (!taken(m_scanner.take_start_tag())) return false;
        m_has_root = true;
        m_has_child = m_scanner.is_empty_element();
        if (!m_has_child) m_open.push_back(m_scanner.name());
        ++m_nodes;
        return true;
    }

    bool take_end_tag()
    {
        if (!taken(m_scanner.take_end_tag())) return false;
        const bool matches = !is_outside() && m_open.back() == m_scanner.name();
        if (!matches) return report(xml_stream_parser::end_tag_mismatch, m_begin);
        m_open.pop_back();
        if (m_has_child) ++m_nodes;
        m_has_child = true;
        return true;
    }

    bool take_doctype()
    {
        if (m_has_root || m_has_doctype) return refuse();
        m_has_doctype = true;
        return taken(m_scanner.take_doctype());
    }

    void end()
    {
        if (m_fault_at_end != xml_stream_parser::no_error) {
            report(m_fault_at_end, m_begin);
        } else if (!is_outside()) {
            report(xml_stream_parser::incomplete, m_begin);
        } else {
            report(m_has_root ? xml_stream_parser::end_of_file : xml_stream_parser::no_root_tag, m_begin);
        }
    }

    xml_scanner m_scanner;
    xml_stream_parser::error_type m_fault_at_end;
    std::vector<std::string_view> m_open;  // names of the open elements, the root's first
    bool m_has_root = false;
    bool m_has_doctype = false;
    bool m_has_child = false;  // whether the innermost open element has a child element
    std::size_t m_begin = 0;   // of the construct at hand
    std::size_t m_nodes = 0;
    xml_stream_parser::error_type m_outcome = xml_stream_parser::no_error;
    std::size_t m_position = 0;
};

}  // namespace

checked_document check_document(const document_text& document, bool header_optional)
{
    return document_checker(document).check(header_optional);
}

}  // namespace NUVEK_2_18::parser
