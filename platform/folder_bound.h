// Internal: a folder that files must be in.
//
// Nothing outside the folder is opened, and the system is not asked whether anything outside it exists. A path is refused
// if its names lead out of the folder at any point, even if they lead back in, and so is a path with a link that leads
// out. That holds even if the folder's content changes meanwhile: on POSIX systems a path is followed name by name,
// from folders that are open, and never through a link; on Windows no link is followed at all, and the path of the open
// file is compared before anything is read.
//
// The path to the folder, and that of the master file up to it, are the host's own; links in them are followed.
#pragma once

#include <cstddef>
#include <string_view>

#include "platform/system_file.h"

namespace NUVEK_2_18::parser {

class folder_bound
{
public:
    // `base` is the path of a folder, with which all paths to be opened begin. Either may be empty: the current folder.
    // If there is no such folder, or it is not on the way to the base, every path is outside.
    folder_bound(const strings::ustring8& folder, const strings::ustring8& base);

    // Opens the regular file that a path names, if it is in the folder. Returns the outcome.
    file_access open_file(const strings::ustring8& path, system_file& file) const;

    // Like files_in(), but lists nothing if the folder is outside. Links are left out.
    folder_listing files_in(const strings::ustring8& folder, std::size_t most) const;

private:
    strings::ustring8 absolute(const strings::ustring8& path) const;
    bool find_rest(const strings::ustring8& path, strings::ustring8& rest) const;

    bool m_is_found = false;     // whether the folder is on the way to the base
    strings::ustring8 m_prefix;  // the beginning of the base's absolute path that names the folder
    strings::ustring8 m_real;    // the folder's path without links
#if defined(_WIN32)
    bool leads_out(std::string_view path) const;

    std::size_t m_base_names = 0;  // in the base as it is written
    std::size_t m_base_depth = 0;  // of the base, below the folder
#else
    descriptor m_root;
    strings::ustring8 m_current;  // the current folder
#endif
};

}  // namespace NUVEK_2_18::parser
