// Internal: collects the findings of a check and puts them in order.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "data_mapper/report/file_set.h"
#include "data_mapper/report/report_state.h"
#include "data_mapper/report/rules.h"

namespace data_mapper4 {

// A part of a file's text, in bytes.
struct text_part
{
    std::size_t file;
    std::size_t begin;
    std::size_t end;
};

// The same in lines and columns.
struct text_range
{
    text_position begin;
    text_position end;
};

struct finding_text
{
    ustring8 message;
    ustring8 hint = {};
    std::vector<related_place> related = {};
    std::optional<map_error_t::result_type> code = {};  // instead of the rule's
};

// A file whose content is checked.
struct checked_content
{
    std::size_t file;
    std::size_t parent;             // the number of the content that includes it; no_number for the master file
    text_part include;              // the including element
    map_error_t::result_type code;  // with which load ended the file
    std::size_t end;                // the byte at which load ended it
};

class report_writer
{
public:
    report_writer(file_set& files, const check_options& options);

    // Adds a content and returns its number. Its findings are placed at the including element.
    std::size_t add(const checked_content& content);
    const checked_content& content(std::size_t number) const { return m_contents[number].content; }

    // Counts a finding and, if it is kept, adds it with what `make` returns. The part is of the content's file.
    void add(std::size_t content, rule broken, std::size_t begin, std::size_t end,
             const std::function<finding_text()>& make);

    // Adds a finding of a file as a whole.
    void add_unplaced(const ustring8& path, rule broken, const finding_text& text);

    text_range range_of(const text_part& part);
    file_place place_of(std::size_t file, const text_range& range) const;
    file_place place_of(const text_part& part) { return place_of(part.file, range_of(part)); }

    load_report::state& state() { return *m_state; }

    // Puts the findings in order. To be called once, at the end.
    load_report finish();

private:
    // A finding, or the content of an included file.
    struct entry
    {
        std::size_t begin;
        bool is_content;
        std::size_t number;
    };

    struct ordered_content
    {
        checked_content content;
        std::vector<entry> entries = {};
        std::size_t explanation = no_number;  // the finding that explains why load ended the file
        notice explained_by = notice::never;
        std::size_t explained_at = 0;
    };

    bool count(const rule_traits& traits);
    void explain(ordered_content& content, const rule_traits& traits, std::size_t begin, std::size_t number);
    std::vector<file_place> includes_of(std::size_t content);
    std::vector<std::size_t> reading_order();

    file_set& m_files;
    std::size_t m_most;
    std::unique_ptr<load_report::state> m_state;
    std::vector<ordered_content> m_contents;
    std::vector<finding> m_findings;       // in the order of being found
    std::size_t m_repetition = no_number;  // the last finding of a file that is included again
    std::vector<std::size_t> m_unplaced;   // numbers of findings
};

}  // namespace data_mapper4
