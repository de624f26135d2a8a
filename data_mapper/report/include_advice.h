// Internal: what to say about the path of an include.
#pragma once

#include <filesystem>
#include <vector>

#include "data_mapper/report/report_writer.h"

namespace data_mapper4 {

class include_advice
{
public:
    // If may_look is false, folders are not looked into.
    include_advice(const std::filesystem::path& master, const file_set& files, bool may_look)
        : m_base(master.parent_path()), m_files(files), m_may_look(may_look)
    {
    }

    // Explains why a file cannot be read; `access` is the reason. `written` is the path in the include, `opened` the
    // path that load tried to open, and `including` the file with the include.
    finding_text explain_missing(const ustring8& written, const ustring8& opened, const ustring8& including,
                                 file_access access);

    // Says why the file is not found on every system; empty if it is.
    ustring8 find_unportable(const ustring8& written, const ustring8& opened);

private:
    bool is_file(const std::filesystem::path& path) const;
    ustring8 near_file(const std::filesystem::path& path);
    ustring8 nearest(const ustring8& name, const std::vector<ustring8>& names);
    const std::vector<ustring8>& names_in(const std::filesystem::path& folder);

    std::filesystem::path m_base;
    const file_set& m_files;
    bool m_may_look;
    std::filesystem::path m_folder;  // the one that was looked into last
    bool m_is_folder_known = false;
    std::vector<ustring8> m_names;  // of the files in it, sorted
    bool m_has_all_names = true;    // false if there are more
    std::size_t m_compared = 0;     // names, so far
    std::size_t m_listed = 0;       // entries of folders, so far
};

}  // namespace data_mapper4
