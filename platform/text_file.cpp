#include "platform/text_file.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
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
#include <climits>
#endif

namespace NUVEK_2_18::parser {

// A regular file. Paths are in UTF-8. The constructor checks again that the file is regular, because that may change
// after is_regular() was called.
#if defined(_WIN32)

namespace {

// Asks the system itself: std::filesystem::absolute of libstdc++ takes the beginning of `\\?\` and `\\server` for that
// of a folder. Empty if the system cannot say.
std::wstring full_path(const std::filesystem::path& path)
{
    std::wstring full(GetFullPathNameW(path.c_str(), 0, nullptr, nullptr), L'\0');
    full.resize(GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
    return full;
}

}  // namespace

class text_file::handle
{
public:
    static constexpr char separator = '\\';
    static constexpr char other_separator = '/';
    static constexpr std::size_t longest_path = 32767;  // in UTF-16 units

    // Asks the system itself: to the C library, the question mark of `\\?\` is a wildcard. The system calls devices such
    // as NUL and COM1 files, but their full paths begin with `\\.\`, in whatever folder they are named.
    static bool is_regular(const strings::ustring8& path)
    {
        const std::filesystem::path name = std::filesystem::u8path(path);
        const DWORD attributes = GetFileAttributesW(name.c_str());
        if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return false;
        return full_path(name).compare(0, 4, LR"(\\.\)") != 0;
    }

    explicit handle(const strings::ustring8& path)
        : m_file(_wfsopen(std::filesystem::u8path(path).c_str(), L"rb", _SH_DENYNO))
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
    struct closer
    {
        void operator()(std::FILE* file) const { static_cast<void>(std::fclose(file)); }
    };

    std::unique_ptr<std::FILE, closer> m_file;
    std::int64_t m_size = 0;  // in bytes, as the system reports it
};

namespace {

// Empty if there is no such file or folder.
std::wstring final_path(const std::filesystem::path& path)
{
    constexpr DWORD shared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const HANDLE file =
        CreateFileW(path.c_str(), 0, shared, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (file == INVALID_HANDLE_VALUE) return {};
    std::wstring found(std::size_t{1} << 16, L'\0');  // more than any path
    found.resize(GetFinalPathNameByHandleW(file, found.data(), static_cast<DWORD>(found.size()), 0));
    CloseHandle(file);
    if (!found.empty() && found.back() == L'\\') found.pop_back();  // of a drive
    return found;
}

}  // namespace

// Not by std::filesystem, because not all libraries know links, the letter case of names or `\\?\` here.
std::filesystem::path resolved(const std::filesystem::path& path)
{
    std::filesystem::path missing;
    for (std::filesystem::path at = full_path(path);; at = at.parent_path()) {
        const std::filesystem::path found = final_path(at);
        if (!found.empty()) return missing.empty() ? found : found / missing;
        if (!at.has_relative_path()) return {};
        missing = missing.empty() ? at.filename() : at.filename() / missing;
    }
}

#else

class text_file::handle
{
public:
    static constexpr char separator = '/';
    static constexpr char other_separator = '\\';
    static constexpr std::size_t longest_path = PATH_MAX - 1;  // in bytes; a UTF-16 unit takes at least one

    static bool is_regular(const strings::ustring8& path)
    {
        struct stat status = {};
        return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
    }

    // A pipe must not block the host, and a terminal must not become its controlling terminal.
    explicit handle(const strings::ustring8& path)
        : m_descriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY))
    {
        struct stat status = {};
        if (!is_open()) return;
        if (::fstat(m_descriptor, &status) != 0 || !S_ISREG(status.st_mode)) close();
        m_size = status.st_size;
    }
    ~handle() { close(); }
    handle(const handle&) = delete;
    handle& operator=(const handle&) = delete;

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
    std::int64_t m_size = 0;  // in bytes, as the system reports it
};

std::filesystem::path resolved(const std::filesystem::path& path)
{
    std::error_code error;
    std::filesystem::path found = std::filesystem::canonical(path, error);
    if (error) found = std::filesystem::weakly_canonical(path, error);
    return error ? std::filesystem::path() : found;
}

#endif

namespace {

// A text_buffer refuses a capacity that could not be doubled.
std::size_t grown(std::size_t capacity, std::size_t claimed)
{
    return capacity < claimed ? std::min(capacity * 2, claimed) : capacity * 2;
}

}  // namespace

text_file::~text_file() = default;

bool text_file::is_open() const
{
    return m_file != nullptr && m_file->is_open();
}

// A hostile file may include many paths that are too long; those never reach the system.
text_file::text_file(const strings::ustring16& path)
{
    if (path.size() > handle::longest_path || path.find(u'\0') != strings::ustring16::npos) return;
    if (!unicode::append_utf16(path, m_path)) return;
    bool is_regular = handle::is_regular(m_path);
    if (!is_regular) {
        std::replace(m_path.begin(), m_path.end(), handle::other_separator, handle::separator);
        is_regular = handle::is_regular(m_path);
    }
    if (is_regular) m_file = std::make_unique<handle>(m_path);
}

document_text text_file::read(std::uint64_t most_bytes)
{
    // The first buffer is as large as the file claims to be, up to this size; beyond it the buffer grows as data
    // arrives.
    constexpr std::size_t most_at_once = std::size_t{1} << 26;
    // Some systems do not read 2 GiB or more in one call.
    constexpr std::size_t most_in_a_call = std::size_t{1} << 30;
    // One more, so that a file of the claimed size is read to its end without growing the buffer.
    const auto claimed = static_cast<std::size_t>(std::clamp<std::int64_t>(m_file->size(), 0, SIZE_MAX / 4)) + 1;
    text_buffer bytes(std::min(claimed, most_at_once));
    std::int64_t got = 0;
    do {
        if (bytes.size() == bytes.capacity()) bytes.grow(grown(bytes.capacity(), claimed));
        const std::size_t room = std::min(bytes.capacity() - bytes.size(), most_in_a_call);
        got = m_file->read(bytes.data() + bytes.size(), room);
        if (got > 0) bytes.resize(bytes.size() + static_cast<std::size_t>(got));
    } while (got > 0 && bytes.size() <= most_bytes);
    m_file.reset();
    if (got < 0) return {{}, xml_fault::read_failed};
    if (bytes.size() > most_bytes) return {{}, xml_fault::too_large};
    return decode_document(std::move(bytes));
}

}  // namespace NUVEK_2_18::parser
