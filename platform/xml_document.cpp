#include "platform/xml_document.h"

#include <string_view>
#include <utility>
#include <vector>

#include "platform/byte_runs.h"
#include "platform/xml_characters.h"
#include "platform/xml_markup.h"
#include "platform/xml_prolog.h"

namespace NUVEK_2_18::parser {

namespace {

// What to do with text after a child element, which belongs to the closing node. If any of a node's stretches of text
// is not blank, its data is all of them, blank ones included, so they must all be collected. Few documents have such
// text, so the first pass collects nothing and stops where it finds some.
enum class text_after_child
{
    stop,
    collect,
};

class document_checker
{
public:
    document_checker(const document_text& document, text_after_child mode)
        : m_mode(mode),
          m_document(document.text.view().data()),
          m_cursor(document.text.view(), document.fault_at_end),
          m_fault_at_end(document.fault_at_end),
          m_index(document.text.view())
    {
    }

    // document = XMLDecl? Misc* (doctypedecl Misc*)? element Misc*
    void check(bool is_declaration_optional)
    {
        m_begin = m_stretch = m_cursor.at();
        for (bool goes_on = take_declaration(is_declaration_optional); goes_on;) {
            m_cursor.skip_space();
            m_begin = m_cursor.at();
            const construct next = next_construct(m_cursor);
            goes_on = next != construct::end && take(next);
            if (next == construct::end) end();
        }
    }

    bool has_stopped() const { return m_has_stopped; }

    // The result, once the check is over. `text` is the one that was checked.
    xml_document result(text_buffer text)
    {
        xml_document document;
        document.fault = m_fault;
        document.fault_begin = static_cast<std::size_t>(m_cursor.at() - m_document);
        document.is_complete = m_fault == xml_fault::none && is_outside();
        document.sound_size = static_cast<std::size_t>(m_begin - m_document);
        document.text = std::move(text);
        document.index = std::move(m_index);
        return document;
    }

private:
    bool is_outside() const { return m_open.empty(); }

    bool report(xml_fault fault)
    {
        m_fault = fault;
        end_stretch();
        return false;
    }

    bool report_at(const char* at, xml_fault fault)
    {
        m_cursor.go_to(at);
        return report(fault);
    }

    // Passes on the result of a take function.
    bool taken(bool is_sound) { return is_sound || report(m_cursor.fault()); }

    bool take_declaration(bool is_optional)
    {
        if (is_at_declaration(m_cursor)) {
            std::string_view encoding;
            return taken(parser::take_declaration(m_cursor, encoding));
        }
        if (is_optional) return true;
        // If not even the first character could be decoded, nobody knows how the document begins.
        const bool is_unread = m_cursor.is_at_end() && m_fault_at_end != xml_fault::none;
        return report(is_unread ? m_fault_at_end : xml_fault::no_declaration);
    }

    bool take(construct next)
    {
        switch (next) {
            case construct::start_tag:
                return take_start_tag();
            case construct::end_tag:
                return take_end_tag();
            case construct::comment:
                return taken(take_comment(m_cursor));
            case construct::instruction:
                return taken(take_instruction(m_cursor));
            case construct::doctype:
                return take_doctype();
            default:
                return take_data(next);
        }
    }

    // Character data or a CDATA section.
    bool take_data(construct next)
    {
        if (is_outside()) return report(xml_fault::text_outside_root);
        std::string_view content;
        bool is_blank = true;
        const bool is_text = next == construct::text;
        if (!taken(is_text ? take_text(m_cursor, is_blank) : take_cdata(m_cursor, content))) return false;
        m_is_blank = m_is_blank && is_blank && is_space(content);
        m_has_stopped = !m_is_blank && m_has_child && m_mode == text_after_child::stop;
        return !m_has_stopped;
    }

    bool take_start_tag()
    {
        if (is_outside() && m_has_root) return report(xml_fault::second_root);
        end_stretch();
        const std::size_t position = m_index.size();
        if (!taken(parser::take_start_tag(m_cursor, m_index))) return false;
        const bool is_empty = m_index.form_at(position) == xml_element::kind::whole;
        if (!is_empty) open(position);
        m_stretch = m_cursor.at();
        m_has_root = true;
        m_has_child = is_empty;
        return true;
    }

    bool take_end_tag()
    {
        std::string_view name;
        if (!taken(parser::take_end_tag(m_cursor, name))) return false;
        const bool matches = !is_outside() && m_index.name_at(m_open.back()) == name;
        if (!matches) return report_at(m_begin, xml_fault::end_tag_mismatch);
        end_stretch();
        close(name);
        m_stretch = m_cursor.at();
        m_has_child = true;
        return true;
    }

    void open(std::size_t position)
    {
        m_open.push_back(position);
        if (m_mode == text_after_child::collect) m_first_after_child.push_back({m_after_child.size(), true});
    }

    void close(std::string_view name)
    {
        if (m_has_child) {
            m_index.add(xml_element::kind::closing, m_begin, name);
        } else {
            m_index.set_form(m_open.back(), xml_element::kind::whole);
        }
        m_open.pop_back();
        if (m_mode == text_after_child::collect) add_texts_after_children();
    }

    // Adds the stretches after the children of the element being closed. They belong to its closing node.
    void add_texts_after_children()
    {
        const auto [first, are_blank] = m_first_after_child.back();
        for (std::size_t i = first; i < m_after_child.size() && !are_blank; ++i) m_index.add_text(m_after_child[i]);
        m_after_child.resize(first);
        m_first_after_child.pop_back();
    }

    // Called at a tag, a fault or the end of the text, which end the stretch before them.
    void end_stretch()
    {
        if (!m_is_blank || m_mode == text_after_child::collect) note_stretch();
        m_is_blank = true;
    }

    void note_stretch()
    {
        if (!m_has_child && !m_is_blank) m_index.add_text(m_stretch);
        if (!m_has_child || is_outside() || m_begin == m_stretch) return;
        m_after_child.push_back(m_stretch);
        m_first_after_child.back().are_blank &= m_is_blank;
    }

    bool take_doctype()
    {
        if (m_has_root || m_has_doctype) return report(xml_fault::bad_doctype);
        m_has_doctype = true;
        return taken(parser::take_doctype(m_cursor));
    }

    void end()
    {
        m_fault = !m_has_root && m_fault_at_end == xml_fault::none ? xml_fault::no_root : m_fault_at_end;
        end_stretch();
    }

    struct collected
    {
        std::size_t first;  // the index in m_after_child
        bool are_blank;
    };

    text_after_child m_mode;
    const char* m_document;
    xml_cursor m_cursor;
    xml_fault m_fault_at_end;
    xml_fault m_fault = xml_fault::none;
    xml_index m_index;
    std::vector<std::size_t> m_open;  // positions of the open elements, the root's first
    bool m_has_root = false;
    bool m_has_doctype = false;
    bool m_has_child = false;         // whether the innermost open element has a child element
    const char* m_begin = nullptr;    // of the current construct
    const char* m_stretch = nullptr;  // the beginning of the current stretch of text
    bool m_is_blank = true;           // whether it has been all white space so far
    bool m_has_stopped = false;
    std::vector<const char*> m_after_child;      // the stretches after children of the open elements
    std::vector<collected> m_first_after_child;  // one for each open element: which of these are its own
};

}  // namespace

xml_document check_document(document_text source, bool is_declaration_optional)
{
    for (const text_after_child mode : {text_after_child::stop, text_after_child::collect}) {
        document_checker checker(source, mode);
        checker.check(is_declaration_optional);
        if (!checker.has_stopped()) return checker.result(std::move(source.text));
    }
    return {};
}

}  // namespace NUVEK_2_18::parser
