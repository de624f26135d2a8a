#include "platform/text_file.h"

#include <algorithm>
#include <cstddef>
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

#include <cstdio>
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#endif

namespace NUVEK_2_18::parser {

namespace {

namespace fs = std::filesystem;

// Opening checks once more that the file is a regular one: what stands at a path can change after it was looked at.
#if defined(_WIN32)

struct file_closer
{
    void operator()(std::FILE* file) const { static_cast<void>(std::fclose(file)); }
};

class system_file
{
public:
    explicit system_file(const fs::path& path) : m_file(_wfsopen(path.c_str(), L"rb", _SH_DENYNO))
    {
        if (m_file == nullptr) return;
        const int descriptor = _fileno(m_file.get());
        if (GetFileType(reinterpret_cast<HANDLE>(_get_osfhandle(descriptor))) != FILE_TYPE_DISK) m_file.reset();
        if (m_file != nullptr) m_size = _filelengthi64(descriptor);
    }

    bool is_open() const { return m_file != nullptr; }
    std::int64_t size() const { return m_size; }

    // How many bytes were read, 0 at the end; less than 0 after a failure.
    std::int64_t read(char* to, std::size_t size)
    {
        const std::size_t got = std::fread(to, 1, size, m_file.get());
        return got == 0 && std::ferror(m_file.get()) != 0 ? -1 : static_cast<std::int64_t>(got);
    }

private:
    std::unique_ptr<std::FILE, file_closer> m_file;
    std::int64_t m_size = 0;  // bytes, as the system has it
};

#else

class system_file
{
public:
    // A pipe must not make the host wait, nor a terminal become its own.
    explicit system_file(const fs::path& path)
        : m_descriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY))
    {
        struct stat status = {};
        if (!is_open()) return;
        if (::fstat(m_descriptor, &status) != 0 || !S_ISREG(status.st_mode)) close();
        m_size = status.st_size;
    }
    ~system_file() { close(); }
    system_file(const system_file&) = delete;
    system_file& operator=(const system_file&) = delete;

    bool is_open() const { return m_descriptor >= 0; }
    std::int64_t size() const { return m_size; }

    // How many bytes were read, 0 at the end; less than 0 after a failure.
    std::int64_t read(char* to, std::size_t size)
    {
        for (;;) {
            const auto got = ::read(m_descriptor, to, size);
            if (got >= 0 || errno != EINTR) return got;
        }
    }

private:
    void close()
    {
        if (is_open()) ::close(m_descriptor);
        m_descriptor = -1;
    }

    int m_descriptor;
    std::int64_t m_size = 0;  // bytes, as the system has it
};

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

std::size_t grown(std::size_t capacity, std::size_t claimed)
{
    return capacity < claimed ? std::min(capacity * 2, claimed) : capacity * 2;
}

bool is_valid(const strings::ustring16& path, strings::ustring8& in_utf8)
{
    return path.find(u'\0') == strings::ustring16::npos && unicode::append_utf16(path, in_utf8);
}

}  // namespace

class text_file::handle : public system_file
{
    using system_file::system_file;
};

text_file::~text_file() = default;

bool text_file::is_open() const
{
    return m_file != nullptr && m_file->is_open();
}

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
    if (type == fs::file_type::regular) m_file = std::make_unique<handle>(file);
}

document_text text_file::read()
{
    // What the file claims of its size is worth this much memory; beyond it the buffer grows with what is read.
    constexpr std::size_t most_at_once = std::size_t{1} << 26;
    // The calls of the system take no more.
    constexpr std::size_t most_in_a_call = std::size_t{1} << 30;
    // One more, so that a file of the size it claims ends without growing.
    const auto claimed = static_cast<std::size_t>(std::clamp<std::int64_t>(m_file->size(), 0, SIZE_MAX / 4)) + 1;
    text_buffer bytes(std::min(claimed, most_at_once));
    std::int64_t got = 0;
    do {
        if (bytes.size() == bytes.capacity()) bytes.grow(grown(bytes.capacity(), claimed));
        const std::size_t room = std::min(bytes.capacity() - bytes.size(), most_in_a_call);
        got = m_file->read(bytes.data() + bytes.size(), room);
        if (got > 0) bytes.resize(bytes.size() + static_cast<std::size_t>(got));
    } while (got > 0);
    m_file.reset();
    if (got < 0) return {{}, xml_stream_parser::fatal_error};
    return decode_document(std::move(bytes));
}

}  // namespace NUVEK_2_18::parser
