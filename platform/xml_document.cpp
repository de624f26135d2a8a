#include "platform/xml_document.h"

#include <string_view>
#include <vector>

#include "platform/byte_runs.h"
#include "platform/plain_markup.h"
#include "platform/xml_characters.h"
#include "platform/xml_scanner.h"

namespace NUVEK_2_18::parser {

namespace {

using construct = xml_scanner::construct;

class document_checker
{
public:
    explicit document_checker(const document_text& document)
        : m_scanner(document.text.view(), document.fault_at_end), m_fault_at_end(document.fault_at_end)
    {
    }

    // document = XMLDecl? Misc* (doctypedecl Misc*)? element Misc*
    checked_document check(bool header_optional)
    {
        if (!take_header(header_optional)) return outcome();
        for (construct next = m_scanner.ahead(); next != construct::end; next = m_scanner.ahead()) {
            take_plain();
            next = m_scanner.ahead();
            m_begin = m_scanner.position();
            if (!take(next)) return outcome();
        }
        m_begin = m_scanner.position();
        end();
        return outcome();
    }

private:
    bool is_outside() const { return m_open.empty(); }

    checked_document outcome() const { return {m_outcome, m_begin, m_position, m_nodes, m_has_mixed_text}; }

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

    // Takes what stands within the root as long as it is plain.
    void take_plain()
    {
        const char* at = m_scanner.at();
        while (!is_outside()) {
            const char* const tag = skip_plain_text(at);
            if (tag == nullptr) break;
            at = tag;
            const char* const end = at[1] == '/' ? take_plain_end_tag(at) : take_plain_start_tag(at);
            if (end == nullptr) break;
            at = end;
        }
        m_scanner.go_to(at);
    }

    const char* skip_plain_text(const char* at)
    {
        const char* const text = skip_space(at);
        if (*text == '<') return text;
        const char* const end = find_first(text, '<', '&', ']');
        if (*end != '<') return nullptr;
        m_has_mixed_text |= m_has_child;
        return end;
    }

    const char* take_plain_start_tag(const char* at)
    {
        const plain_tag tag = m_finder.find(at);
        if (tag.end != nullptr) add_start_tag(tag.name, tag.is_empty_element);
        return tag.end;
    }

    const char* take_plain_end_tag(const char* at)
    {
        const char* const end = find_plain_end_tag(at, m_open.back());
        if (end != nullptr) add_end_tag();
        return end;
    }

    bool take(construct next)
    {
        switch (next) {
            case construct::start_tag:
                return take_start_tag();
            case construct::end_tag:
                return take_end_tag();
            case construct::text:
                return take_text();
            case construct::cdata:
                m_has_mixed_text |= m_has_child;
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

    bool take_text()
    {
        if (is_outside()) return taken(m_scanner.take_blank());
        if (!taken(m_scanner.take_text())) return false;
        m_has_mixed_text |= m_has_child && !is_space(m_scanner.content());
        return true;
    }

    bool take_start_tag()
    {
        if (is_outside() && m_has_root) return refuse();
        if (!taken(m_scanner.take_start_tag())) return false;
        add_start_tag(m_scanner.name(), m_scanner.is_empty_element());
        return true;
    }

    void add_start_tag(std::string_view name, bool is_empty_element)
    {
        m_has_root = true;
        m_has_child = is_empty_element;
        if (!is_empty_element) m_open.push_back(name);
        ++m_nodes;
    }

    bool take_end_tag()
    {
        if (!taken(m_scanner.take_end_tag())) return false;
        const bool matches = !is_outside() && m_open.back() == m_scanner.name();
        if (!matches) return report(xml_stream_parser::end_tag_mismatch, m_begin);
        add_end_tag();
        return true;
    }

    void add_end_tag()
    {
        m_open.pop_back();
        if (m_has_child) ++m_nodes;
        m_has_child = true;
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
    plain_start_tag_finder m_finder;
    xml_stream_parser::error_type m_fault_at_end;
    std::vector<std::string_view> m_open;  // names of the open elements, the root's first
    bool m_has_root = false;
    bool m_has_doctype = false;
    bool m_has_child = false;  // whether the innermost open element has a child element
    bool m_has_mixed_text = false;
    std::size_t m_begin = 0;  // of the construct at hand
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
