#include "platform/text_file.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <system_error>
#include <utility>

#include "platform/unicode.h"

#if defined(_WIN32)
#if !defined(NOMINMAX)
#define NOMINMAX
#endif
#include <io.h>
#include <share.h>
#include <windows.h>
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace NUVEK_2_18::parser {

namespace {

namespace fs = std::filesystem;

// Opening checks once more that the file is a regular one: what stands at a path can change after it was looked at.
#if defined(_WIN32)

std::FILE* open_for_reading(const fs::path& path)
{
    std::FILE* const file = _wfsopen(path.c_str(), L"rb", _SH_DENYNO);
    if (file == nullptr) return nullptr;
    const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(file)));
    if (GetFileType(handle) == FILE_TYPE_DISK) return file;
    std::fclose(file);
    return nullptr;
}

#else

// A pipe must not make the host wait, nor a terminal become its own.
std::FILE* open_for_reading(const fs::path& path)
{
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0) return nullptr;
    struct stat status = {};
    std::FILE* file = nullptr;
    if (::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)) file = ::fdopen(descriptor, "rb");
    if (file == nullptr) ::close(descriptor);
    return file;
}

#endif

// What stands at the path; not_found also where no file can have such a name: a part of it is too long, or the file
// system knows the backslash only as a separator.
fs::file_type type_of_file(const fs::path& path)
{
    std::error_code error;
    const fs::file_type type = fs::status(path, error).type();
    const bool is_impossible = error == std::errc::filename_too_long || error == std::errc::invalid_argument;
    return is_impossible ? fs::file_type::not_found : type;
}

std::size_t expected_size(const fs::path& path)
{
    std::error_code error;
    const std::uintmax_t size = fs::file_size(path, error);
    return error ? 0 : static_cast<std::size_t>(std::min<std::uintmax_t>(size, SIZE_MAX / 2));
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
    // What the file claims of its size is worth this much memory; beyond it the buffer grows with what is read.
    constexpr std::size_t most_at_once = std::size_t{1} << 26;
    const std::size_t claimed = m_expected_size + 1;
    strings::ustring8 bytes(std::min(claimed, most_at_once), '\0');
    std::size_t size = 0;
    for (std::size_t got = 1; got != 0; size += got) {
        if (size == bytes.size()) bytes.resize(size < claimed ? std::min(size * 2, claimed) : size * 2);
        got = std::fread(&bytes[size], 1, bytes.size() - size, m_file.get());
    }
    const bool has_failed = std::ferror(m_file.get()) != 0;
    m_file.reset();
    if (has_failed) return {{}, xml_stream_parser::fatal_error};
    bytes.resize(size);
    return decode_document(std::move(bytes));
}

}  // namespace NUVEK_2_18::parser
