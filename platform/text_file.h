// Internal: reads the text of the document that a path names.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>

#include "platform/text_encoding.h"
#include "platform/ustring.h"

namespace NUVEK_2_18::parser {

class text_file
{
public:
    // Opens the regular file that the path names: as written or, if that names none, with every backslash replaced by
    // the system's separator; on Windows, with every slash replaced by a backslash. Nothing else is ever opened.
    explicit text_file(const strings::ustring16& path);
    ~text_file();
    text_file(const text_file&) = delete;
    text_file& operator=(const text_file&) = delete;

    bool is_open() const;

    // The path that was opened, in UTF-8; if the file is not open, the last one that was tried. Empty if none was.
    const strings::ustring8& path() const { return m_path; }

    // Reads an open file to its end and closes it. If that fails, the text is empty, and its fault is read_failed, or
    // too_large for a file of more bytes than the limit.
    document_text read(std::uint64_t most_bytes = UINT64_MAX);

private:
    class handle;
    std::unique_ptr<handle> m_file;
    strings::ustring8 m_path;
};

// Returns the path without symbolic links, as far as it exists, in the one form that the system has for it; empty if the
// system cannot say.
std::filesystem::path resolved(const std::filesystem::path& path);

}  // namespace NUVEK_2_18::parser
