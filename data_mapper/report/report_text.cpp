// A report as text, in the format of compilers, so that editors and build systems find the places.
#include <algorithm>

#include "data_mapper/load_report.h"
#include "data_mapper/report/report_state.h"
#include "data_mapper/report/wording.h"
#include "platform/display_width.h"
#include "platform/unicode.h"

namespace data_mapper4 {

namespace {

namespace unicode = NUVEK_2_18::unicode;

// The escape sequences of a terminal; all empty if there are no colors.
struct colors
{
    const char* place = "";
    const char* error = "";
    const char* warning = "";
    const char* note = "";
    const char* mark = "";
    const char* end = "";
};

constexpr colors no_colors = {};
constexpr colors terminal = {"\x1B[1m", "\x1B[1;31m", "\x1B[1;35m", "\x1B[1;36m", "\x1B[1;32m", "\x1B[m"};

// Precedes a line that was cut at its beginning.
constexpr const char* ellipsis = "...";

class report_printer
{
public:
    explicit report_printer(const colors& used) : m_colors(used) {}

    void print(const finding& each)
    {
        const bool is_error = each.level == severity::error;
        print_head(each.where, is_error ? m_colors.error : m_colors.warning, is_error ? "error" : "warning");
        m_text += each.message + " [" + each.rule + "]\n";
        if (!each.source.empty()) print_source(each);
        if (!each.hint.empty()) m_text += "  = " + each.hint + '\n';
        for (const related_place& other : each.related) print_note(other.where, other.message);
        for (const file_place& include : each.included_by) print_note(include, "included here");
    }

    ustring8 take() { return std::move(m_text); }

private:
    void print_head(const file_place& place, const char* color, const char* label)
    {
        m_text += m_colors.place + printable(place.file) + ':';
        if (place.line != 0) m_text += std::to_string(place.line) + ':' + std::to_string(place.column) + ':';
        m_text += m_colors.end;
        m_text += ' ';
        m_text += color + ustring8(label) + ": " + m_colors.end;
    }

    void print_note(const file_place& place, const ustring8& message)
    {
        print_head(place, m_colors.note, "note");
        m_text += message + '\n';
    }

    // The line, and below it the mark: `^` for the first column of the place, `~` for the others.
    void print_source(const finding& each)
    {
        const ustring8 line = printable(each.source);
        const bool is_cut = each.source_column > 1;
        const ustring8 margin = "  ";
        m_text += margin + (is_cut ? ellipsis : "") + line + '\n' + margin;
        if (is_cut) m_text += "   ";
        const char* at = line.data();
        const char* const end = at + line.size();
        std::size_t column = each.source_column;
        for (; at != end && column < each.where.column; ++column) {
            const char32_t code_point = unicode::take_utf8(at, end);
            m_text.append(code_point == '\t' ? 1 : unicode::display_width(code_point), code_point == '\t' ? '\t' : ' ');
        }
        std::size_t width = 0;
        const bool is_one_line = each.where.end_line == each.where.line;
        for (; at != end && (!is_one_line || column < each.where.end_column); ++column) {
            width += unicode::display_width(unicode::take_utf8(at, end));
        }
        m_text += m_colors.mark + ('^' + ustring8(std::max<std::size_t>(width, 1) - 1, '~')) + m_colors.end + '\n';
    }

    const colors& m_colors;
    ustring8 m_text;
};

}  // namespace

ustring8 load_report::text(bool is_colored) const
{
    report_printer printer(is_colored ? terminal : no_colors);
    for (const finding& each : findings()) printer.print(each);
    ustring8 text = printer.take();
    const std::size_t left_out = errors() + warnings() - findings().size();
    if (left_out != 0) text += "findings not shown: " + std::to_string(left_out) + '\n';
    return text;
}

}  // namespace data_mapper4
