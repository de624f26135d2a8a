// Internal: reads the text of the document that a path names.
#pragma once

#include <cstdint>

#include "platform/folder_bound.h"
#include "platform/system_file.h"
#include "platform/text_encoding.h"
#include "platform/ustring.h"

namespace NUVEK_2_18::parser {

class text_file
{
public:
    // Opens the regular file that the path names: as written or, if that names none, with the separators of other systems
    // replaced by this one's. Nothing else is ever opened; nor, unless `bound` is null, a file outside it.
    explicit text_file(const strings::ustring16& path, const folder_bound* bound = nullptr);

    file_access access() const { return m_access; }
    bool is_open() const { return m_access == file_access::open; }

    // The path that was opened, in UTF-8; if the file is not open, the last one that was tried. Empty if none was.
    const strings::ustring8& path() const { return m_path; }

    // In bytes: until read() is called, as the system reports it; then as many as were read.
    std::uint64_t size() const { return m_size; }
    const file_identity& identity() const { return m_file.identity(); }

    // Reads an open file to its end and closes it. If that fails, the text is empty, and its fault is read_failed, or
    // too_large for a file of more bytes than the limit; one that reports such a size is not read.
    document_text read(std::uint64_t most_bytes = UINT64_MAX);

private:
    void open(strings::ustring8 path, const folder_bound* bound);

    system_file m_file;
    strings::ustring8 m_path;
    file_access m_access = file_access::missing;
    std::uint64_t m_size = 0;
};

// Returns the path in the system's form: in UTF-8, with only its own separators. Empty if no file has such a path.
strings::ustring8 system_path(const strings::ustring16& path);

}  // namespace NUVEK_2_18::parser
