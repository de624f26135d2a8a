#include "data_mapper/report/report_writer.h"

#include <algorithm>
#include <utility>

namespace data_mapper4 {

namespace {

constexpr std::size_t most_includes = 16;

}  // namespace

report_writer::report_writer(file_set& files, const check_options& options)
    : m_files(files), m_most(options.max_findings), m_state(std::make_unique<load_report::state>())
{
}

std::size_t report_writer::add(const checked_content& content)
{
    const std::size_t number = m_contents.size();
    if (content.parent != no_number)
        m_contents[content.parent].entries.push_back({content.include.begin, true, number});
    m_contents.push_back({content});
    return number;
}

// Errors and warnings are counted apart, so that warnings never displace an error.
bool report_writer::count(const rule_traits& traits)
{
    return (traits.level == severity::error ? m_state->errors : m_state->warnings)++ < m_most;
}

void report_writer::add(std::size_t content, rule broken, std::size_t begin, std::size_t end,
                        const std::function<finding_text()>& make)
{
    const rule_traits& traits = traits_of(broken);
    if (!count(traits)) return;
    const std::size_t file = m_contents[content].content.file;
    finding_text text = make();
    text_window window = m_files.text(file).window_around(begin);
    finding made;
    made.level = traits.level;
    made.rule = traits.name;
    made.message = std::move(text.message);
    made.hint = std::move(text.hint);
    made.code = text.code.value_or(traits.code);
    made.where = place_of({file, begin, end});
    made.source = std::move(window.text);
    made.source_column = window.column;
    made.related = std::move(text.related);
    made.included_by = includes_of(content);
    m_contents[content].entries.push_back({begin, false, m_findings.size()});
    explain(m_contents[content], traits, begin, m_findings.size());
    if (broken == rule::include_cycle || broken == rule::included_twice) m_repetition = m_findings.size();
    m_findings.push_back(std::move(made));
}

// Load ends a file at its first fault, so the last finding before that place explains it: one that load always notices
// if there is one, otherwise one from which the fault follows.
void report_writer::explain(ordered_content& content, const rule_traits& traits, std::size_t begin, std::size_t number)
{
    if (traits.by_load == notice::never || begin > content.content.end) return;
    const bool is_better = traits.by_load < content.explained_by ||
                           (traits.by_load == content.explained_by && begin >= content.explained_at);
    if (!is_better) return;
    content.explanation = number;
    content.explained_by = traits.by_load;
    content.explained_at = begin;
}

void report_writer::add_unplaced(const ustring8& path, rule broken, const finding_text& text)
{
    const rule_traits& traits = traits_of(broken);
    if (!count(traits)) return;
    finding made;
    made.level = traits.level;
    made.rule = traits.name;
    made.message = text.message;
    made.hint = text.hint;
    made.code = traits.code;
    made.where.file = path;
    m_unplaced.push_back(m_findings.size());
    m_findings.push_back(std::move(made));
}

text_range report_writer::range_of(const text_part& part)
{
    source_text& text = m_files.text(part.file);
    const text_position begin = text.position_of(part.begin);
    return {begin, text.position_of(part.end)};
}

file_place report_writer::place_of(std::size_t file, const text_range& range) const
{
    return {m_files.shown_path(file), range.begin.line, range.begin.column, range.end.line, range.end.column};
}

std::vector<file_place> report_writer::includes_of(std::size_t content)
{
    std::vector<file_place> chain;
    for (const checked_content* each = &m_contents[content].content;
         each->parent != no_number && chain.size() < most_includes; each = &m_contents[each->parent].content) {
        chain.push_back(place_of(each->include));
    }
    return chain;
}

// The numbers of the findings: those of an included file at the place of the include.
std::vector<std::size_t> report_writer::reading_order()
{
    std::vector<std::size_t> order;
    std::vector<std::pair<std::size_t, std::size_t>> chain;  // a content and its next entry
    if (!m_contents.empty()) chain.emplace_back(0, 0);
    while (!chain.empty()) {
        auto& [content, next] = chain.back();
        const std::vector<entry>& entries = m_contents[content].entries;
        if (next == entries.size()) {
            chain.pop_back();
            continue;
        }
        const entry& each = entries[next++];
        if (each.is_content) chain.emplace_back(each.number, 0);
        if (!each.is_content) order.push_back(each.number);
    }
    order.insert(order.end(), m_unplaced.begin(), m_unplaced.end());
    return order;
}

load_report report_writer::finish()
{
    for (ordered_content& each : m_contents) {
        // Files that are read again may end load at any map; the include is to blame.
        if (each.explanation == no_number) each.explanation = m_repetition;
        std::stable_sort(each.entries.begin(), each.entries.end(),
                         [](const entry& a, const entry& b) { return a.begin < b.begin; });
        const bool is_explained = each.content.code != map_error_t::no_error && each.explanation != no_number;
        if (is_explained) m_findings[each.explanation].code = each.content.code;
    }
    std::size_t warnings_left = m_most - std::min(m_most, m_state->errors);
    for (const std::size_t number : reading_order()) {
        finding& each = m_findings[number];
        if (each.level == severity::warning && warnings_left == 0) continue;
        if (each.level == severity::warning) --warnings_left;
        m_state->findings.push_back(std::move(each));
    }
    load_report report;
    report.m_state = std::move(m_state);
    return report;
}

}  // namespace data_mapper4
