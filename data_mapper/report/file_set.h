// Internal: the files of a check. Each is read once, by whatever path it is included; the limits are kept here.
#pragma once

#include <cstddef>
#include <deque>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "data_mapper/load_report.h"
#include "data_mapper/report/source_text.h"
#include "platform/folder_bound.h"
#include "platform/xml_document.h"

namespace data_mapper4 {

using NUVEK_2_18::parser::file_access;

constexpr std::size_t no_number = static_cast<std::size_t>(-1);

// An element of a file; the whole file if the position is no_number, and the master file if the file is no_number.
struct element_place
{
    std::size_t file = no_number;
    std::size_t position = no_number;
};

class file_set
{
public:
    using document_ptr = std::shared_ptr<const NUVEK_2_18::parser::xml_document>;

    file_set(const std::filesystem::path& master, const check_options& options);

    struct opened
    {
        file_access access = file_access::missing;
        std::size_t file = no_number;  // the number of an open file; the same for all paths that lead to it
    };

    // Opens the file that load opens for this path, and reads it if it has not been read. The document says what is wrong
    // with it. `include` is the element that names it. Returns nothing once a limit is exceeded.
    std::optional<opened> open(const std::wstring& path, const element_place& include);

    // Counts the values of a file's maps. Call it before they are loaded. Returns false if there are too many.
    bool take_values(std::size_t file);

    // The limit that was exceeded, if one was.
    struct exceeded_limit
    {
        ustring8 message;
        ustring8 hint;
        element_place where;
    };
    const std::optional<exceeded_limit>& limit() const { return m_limit; }

    const document_ptr& document(std::size_t file) const { return m_files[file].document; }
    source_text& text(std::size_t file) { return m_files[file].text; }

    // The path by which the file was opened first, as the system writes it; and as reports show it, shortened if it is
    // very long.
    const ustring8& path(std::size_t file) const { return m_files[file].path; }
    const ustring8& shown_path(std::size_t file) const { return m_files[file].shown; }

    // Null if files may be anywhere.
    const NUVEK_2_18::parser::folder_bound* bound() const { return m_bound ? &*m_bound : nullptr; }

private:
    struct entry
    {
        ustring8 path;
        ustring8 shown;
        document_ptr document;
        source_text text;
        std::uint64_t size;  // in bytes, on disk
    };

    std::optional<opened> read(const std::wstring& path, const element_place& include);
    bool take_bytes(std::uint64_t size, const ustring8& path, const element_place& include);
    bool exceed(std::uint64_t limit, const ustring8& unit, const ustring8& by, const element_place& where);
    ustring8 as_given(const ustring8& path) const;

    const check_options& m_options;
    std::optional<NUVEK_2_18::parser::folder_bound> m_bound;
    bool m_is_folder_shown;  // whether the master file's path names its folder
    std::deque<entry> m_files;
    std::size_t m_base_size = 0;  // of the base directory, with which all paths begin
    std::map<NUVEK_2_18::strings::ustring16, std::size_t> m_by_path;  // the path without that -> the file
    std::map<NUVEK_2_18::parser::file_identity, std::size_t> m_by_identity;
    std::size_t m_files_left;
    std::uint64_t m_bytes_left;
    std::uint64_t m_values_left;
    std::optional<exceeded_limit> m_limit;
};

}  // namespace data_mapper4
