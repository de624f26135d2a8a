// Internal: reads the text of the document that a path names.
#pragma once

#include <memory>

#include "platform/text_encoding.h"
#include "platform/ustring.h"

namespace NUVEK_2_18::parser {

class text_file
{
public:
    // Opens the regular file that the path names: as written or, if that names none, with every backslash replaced by
    // the system's separator. Nothing else is ever opened.
    explicit text_file(const strings::ustring16& path);
    ~text_file();
    text_file(const text_file&) = delete;
    text_file& operator=(const text_file&) = delete;

    bool is_open() const;

    // Reads an open file to its end and closes it. If reading fails, the text is empty and its fault is read_failed.
    document_text read();

private:
    class handle;
    std::unique_ptr<handle> m_file;
};

}  // namespace NUVEK_2_18::parser
