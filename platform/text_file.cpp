#include "platform/text_file.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <system_error>
#include <utility>

#include "platform/unicode.h"

#if !defined(_WIN32)
#include <fcntl.h>
#include <unistd.h>
#endif

namespace NUVEK_2_18::parser {

namespace {

namespace fs = std::filesystem;

#if defined(_WIN32)

std::FILE* open_for_reading(const fs::path& path)
{
    return _wfopen(path.c_str(), L"rb");
}

#else

// A pipe or device that takes the file's place between the look at it and its opening must not make the host wait, nor
// become its terminal.
std::FILE* open_for_reading(const fs::path& path)
{
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0) return nullptr;
    std::FILE* const file = ::fdopen(descriptor, "rb");
    if (file == nullptr) ::close(descriptor);
    return file;
}

#endif

// What stands at the path; not_found also where no file can have such a name, since one of its parts is too long.
fs::file_type type_of_file(const fs::path& path)
{
    std::error_code error;
    const fs::file_type type = fs::status(path, error).type();
    return error == std::errc::filename_too_long ? fs::file_type::not_found : type;
}

// The size that the file claims, as far as a claim alone is worth memory: beyond that the buffer grows with what is
// read.
std::size_t expected_size(const fs::path& path)
{
    constexpr std::uintmax_t most = std::uintmax_t{1} << 26;
    std::error_code error;
    const std::uintmax_t size = fs::file_size(path, error);
    return error ? 0 : static_cast<std::size_t>(std::min(size, most));
}

bool is_valid(const strings::ustring16& path, strings::ustring8& in_utf8)
{
    return path.find(u'\0') == strings::ustring16::npos && unicode::append_utf16(path, in_utf8);
}

}  // namespace

text_file::text_file(const strings::ustring16& path)
{
    strings::ustring8 name;
    if (!is_valid(path, name)) return;
    fs::path file = fs::u8path(name);
    fs::file_type type = type_of_file(file);
    if (type == fs::file_type::not_found && fs::path::preferred_separator != '\\') {
        std::replace(name.begin(), name.end(), '\\', static_cast<char>(fs::path::preferred_separator));
        file = fs::u8path(name);
        type = type_of_file(file);
    }
    if (type != fs::file_type::regular) return;
    m_file.reset(open_for_reading(file));
    m_expected_size = expected_size(file);
}

document_text text_file::read()
{
    strings::ustring8 bytes(m_expected_size + 1, '\0');
    std::size_t size = 0;
    for (std::size_t got = 1; got != 0; size += got) {
        if (size == bytes.size()) bytes.resize(size * 2);
        got = std::fread(&bytes[size], 1, bytes.size() - size, m_file.get());
    }
    const bool has_failed = std::ferror(m_file.get()) != 0;
    m_file.reset();
    if (has_failed) return {{}, xml_stream_parser::fatal_error};
    bytes.resize(size);
    return decode_document(std::move(bytes));
}

}  // namespace NUVEK_2_18::parser
