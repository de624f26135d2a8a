// check_maps: explains everything that is wrong with a set of map files; load_maps: loads a set only if it has no errors.
//
//     const data_mapper4::load_report report = data_mapper4::check_maps("maps/world.xml");
//     if (report.errors() != 0) std::cerr << report.text();
//
// map_collection::load stops a file at its first fault, and a fault in an included file does not show in its result. A
// check reads the same files, says where every fault is and what to write instead, and goes on after it with the next
// item, map or include. If a file is not well-formed, its check ends there; everything before the fault is checked.
//
// There are two classes of error: those that load notices, because a file ends with a code, or a map is lost, or an
// item is dropped or skipped; and those that it does not, although the author meant something else: ignored text, a
// file that ends with an element open, a map or an include inside a map, a second <maps>, a map element without a name.
// Warnings are for maps without content, which load skips, and for includes that are found on this system but not on
// others. docs/errors.md lists the rules with an example of each.
//
// A check runs load on the same bytes, so the maps and the result of each file are those of load. Each file is read from
// disk once, however often it is included, as long as it does not change.
//
// Texts and paths are UTF-8; bytes of a path that are not are replaced by U+FFFD. A report shows a path of more than
// 512 bytes with its middle replaced by three dots. Lines and columns are counted from 1, columns in Unicode code
// points: a tab is one, a BOM none.
//
// Cost: at most 3 times that of load if there are no errors, 5 times for very many maps of one item; linear in the files
// otherwise, n log n in items and maps. A file counts as often as it is included. Memory at the peak, besides the tables:
// all files with their indexes at once (SECURITY.md says how large they are), some 100 bytes for each item of the map that
// is being checked, 2.5 KB for each reading of a file, 700 bytes for each map, and 1.5 KB for each finding that is kept; and
// for each of these, and for each place of a finding, its path. max_findings, max_files, max_bytes and max_values limit it.
//
// Threads: none of the functions has state; concurrent calls are safe. A report belongs to one thread at a time, or to
// any number that only read it. Exceptions: only std::bad_alloc and std::length_error, as for load.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "data_mapper/map_collection.h"
#include "data_mapper/map_error_t.h"

namespace data_mapper4 {

// What a check may read, and how much it keeps. Exceeding a limit is an error that says which one, and where; nothing
// further is read or loaded, and is_complete() is false.
struct check_options
{
    // The most findings that are kept, errors before warnings. All are counted.
    std::size_t max_findings = 1000;

    // The most files, each counted as often as it is included, whether or not it exists.
    std::size_t max_files = 10000;

    // The most bytes of all files together, as they are on disk, each file counted as often as it is read. A file
    // that is larger than what is left is not read at all.
    std::uint64_t max_bytes = std::uint64_t{1} << 32;

    // If set, a folder that the master file and all that it includes must be in; an empty path is the current folder. A
    // path that leads out of it, by `..` or a link, is an error, and is neither opened nor looked for: load treats it as
    // missing. No suggestion names a file outside the folder. If there is no such folder, everything is outside.
    std::optional<std::filesystem::path> within = {};

    // Whether to list folders, to suggest a name for a missing file, and to compare the letter case of names.
    bool suggest_files = false;

    // The most values that lookups of all items may return together: one for each item and arg; but an item of a
    // collection map, and an arg of a vector collection map, counts once for each attribute name of the map, present or
    // not, so that a small file can have very many values.
    std::uint64_t max_values = 100000000;
};

// How bad a finding is.
enum class severity
{
    error,
    warning,
};

// A part of a file; it may be empty. Line 0 means the whole file.
struct file_place
{
    ustring8 file;  // its path
    std::size_t line = 0;
    std::size_t column = 0;
    std::size_t end_line = 0;
    std::size_t end_column = 0;  // of the character after the part
};

// Another part of a file, and what it has to do with a finding.
struct related_place
{
    ustring8 message;  // such as: first declared here
    file_place where;
};

// An error or a warning.
struct finding
{
    severity level = severity::error;
    ustring8 rule;     // a stable name, such as: duplicate-item
    ustring8 message;  // one line; control characters in names are escaped, and long names are cut
    ustring8 hint;     // one line, what to do about it; may be empty

    // The code with which load ends the file or the map for this; no_error if load does not notice. A file that is read
    // again may end with a code that is only in the finding of the include.
    map_error_t::result_type code = map_error_t::no_error;

    file_place where;
    ustring8 source;                // the line of the place, without its line end, cut to at most 160 code points
    std::size_t source_column = 1;  // the column of its first character
    std::vector<related_place> related;
    std::vector<file_place> included_by;  // the chain of includes, innermost first; of a longer one, the first 16
};

// One reading of a file: a file that is included twice is listed twice.
struct checked_file
{
    ustring8 path;
    bool is_loaded = false;  // false if load ended before it got to this file, which was then only checked
    map_error_t result;      // what the load of this file ended with; no_error with line 0 if it was only checked. Its
                             // line() is not const: call it on a copy
    file_place included_at;  // line 0 for the master file
};

// A loaded map.
struct checked_map
{
    ustring8 name;
    map_type kind = MT_UNKNOWN;
    std::size_t items = 0;
    file_place declared;
};

// The result of a check: what load does with the files, and what is wrong with them.
class DATA_MAPPER4_API load_report
{
public:
    // An empty report.
    load_report();
    ~load_report();
    load_report(load_report&& other) noexcept;
    load_report& operator=(load_report&& other) noexcept;

    // What map_collection::load returns for the master file; no_error with line 0 if a limit stopped the load first.
    map_error_t result() const;

    // What is wrong, in the order of reading: an included file's findings are at the place of the include. The lists
    // live as long as the report, so a temporary report does not hand them out.
    const std::vector<finding>& findings() const&;
    const std::vector<finding>& findings() const&& = delete;

    // The maps that load loads, in the order of their names.
    const std::vector<checked_map>& maps() const&;
    const std::vector<checked_map>& maps() const&& = delete;

    // The files that load read, in that order, then those that were only checked. Empty if the master file was not
    // read.
    const std::vector<checked_file>& files() const&;
    const std::vector<checked_file>& files() const&& = delete;

    // How many errors and warnings there were, including any that were not kept.
    std::size_t errors() const;
    std::size_t warnings() const;

    // False if a limit of the options ended the check.
    bool is_complete() const;

    // The findings as the tool prints them: FILE:LINE:COLUMN: error: MESSAGE [rule], the line of the source with the
    // place marked below it, and notes; then how many findings were not kept, if any. Lines end in LF. Empty if there
    // are no findings. is_colored: with the escape sequences of a terminal. Cost: linear in the text.
    ustring8 text(bool is_colored = false) const;

private:
    friend class report_writer;
    struct state;
    std::unique_ptr<state> m_state;
};

// Checks a master file and everything it includes, as map_collection::load reads them into a new collection.
DATA_MAPPER4_API load_report check_maps(const std::filesystem::path& master, const check_options& options = {});

// The same; and if there is no error, `maps` becomes the loaded collection. Otherwise, or if memory runs out, `maps` is
// unchanged. Warnings do not prevent loading.
DATA_MAPPER4_API load_report load_maps(map_collection& maps, const std::filesystem::path& master,
                                       const check_options& options = {});

// Returns a path in the form that map_collection::load expects on every system: in UTF-16 units, with backslashes and
// at least one of them, so that the base directory is the file's folder. Empty if there is no such path: the path is
// empty, contains a zero, is not UTF-8, or has a backslash within a name where that is not the separator.
DATA_MAPPER4_API std::wstring load_path(const std::filesystem::path& path);

}  // namespace data_mapper4
