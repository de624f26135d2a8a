// Internal: the files of a check. Each is read once, by whatever path it is included.
#pragma once

#include <cstddef>
#include <deque>
#include <filesystem>
#include <map>
#include <memory>
#include <string>

#include "data_mapper/load_report.h"
#include "data_mapper/report/source_text.h"
#include "platform/xml_document.h"

namespace data_mapper4 {

constexpr std::size_t no_number = static_cast<std::size_t>(-1);

class file_set
{
public:
    using document_ptr = std::shared_ptr<const NUVEK_2_18::parser::xml_document>;

    file_set(const std::filesystem::path& master, const check_options& options);

    enum class state
    {
        read,  // or at least opened; the document says what is wrong with it
        missing,
        outside,
        beyond_limit,
    };

    struct opened
    {
        state found = state::missing;
        std::size_t file = no_number;  // the number of a file that was read; the same for all paths that lead to it
        ustring8 path = {};            // the one that was tried last
    };

    // Opens and reads the file that load opens for this path. Reads nothing more once a limit is reached. The result is
    // valid until the next call.
    const opened& open(const std::wstring& path);

    const document_ptr& document(std::size_t file) const { return m_files[file].document; }
    source_text& text(std::size_t file) { return m_files[file].text; }

    // The path by which the file was opened first, as the system writes it.
    const ustring8& path(std::size_t file) const { return m_files[file].path; }

    // Whether the limit of the files' number or of their bytes was reached.
    bool is_limit_reached() const { return m_is_limit_reached; }
    ustring8 limit_text() const;

    // Whether includes may lead into this folder.
    bool is_allowed(const std::filesystem::path& folder) const;

    // Counts a file, and returns false if that is too many. To be called before open.
    bool count();

private:
    struct entry
    {
        ustring8 path;
        document_ptr document;
        source_text text;
    };

    opened read(const std::wstring& path, bool is_master);
    ustring8 shown(const ustring8& path) const;

    const check_options& m_options;
    std::filesystem::path m_within;  // canonical; empty if includes may lead anywhere
    bool m_is_folder_shown;          // whether the master file's path names its folder
    std::deque<entry> m_files;
    std::map<std::wstring, opened> m_by_path;  // those that were read
    opened m_unread;
    std::map<std::filesystem::path, std::size_t> m_by_identity;
    std::uint64_t m_bytes = 0;
    std::size_t m_counted = 0;
    bool m_is_limit_reached = false;
};

}  // namespace data_mapper4
