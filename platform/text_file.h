// Internal: a path -> the document's text.
#pragma once

#include <cstdio>
#include <memory>

#include "platform/text_encoding.h"
#include "platform/ustring.h"

namespace NUVEK_2_18::parser {

class text_file
{
public:
    // Opens the regular file that the path names: as written or, where no such file exists, with every backslash taken
    // as the system's separator. Nothing else is ever opened.
    explicit text_file(const strings::ustring16& path);

    bool is_open() const { return m_file != nullptr; }

    // Reads an open file to its end and closes it. A read that fails gives no text and fatal_error.
    document_text read();

private:
    struct closer
    {
        void operator()(std::FILE* file) const { static_cast<void>(std::fclose(file)); }
    };
    std::unique_ptr<std::FILE, closer> m_file;
    std::size_t m_expected_size = 0;  // bytes; a hint
};

}  // namespace NUVEK_2_18::parser
