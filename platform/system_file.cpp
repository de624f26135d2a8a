#include "platform/system_file.h"

#include <memory>
#include <new>

#if defined(_WIN32)
#if !defined(NOMINMAX)
#define NOMINMAX
#endif
#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <windows.h>

#include <algorithm>
#include <filesystem>
#else
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#endif

namespace NUVEK_2_18::parser {

#if defined(_WIN32)

namespace {

std::uint64_t joined(DWORD high, DWORD low)
{
    return std::uint64_t{high} << 32 | low;
}

// Asks the system itself: to the C library, the question mark of `\\?\` is a wildcard. The system calls devices such as
// NUL and COM1 files, but their full paths begin with `\\.\`, whatever folder they are named in.
file_access access_of(const std::wstring& path)
{
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) return file_access::missing;
    if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return file_access::not_a_file;
    std::wstring full(GetFullPathNameW(path.c_str(), 0, nullptr, nullptr), L'\0');
    full.resize(GetFullPathNameW(path.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
    return full.compare(0, 4, LR"(\\.\)") == 0 ? file_access::not_a_file : file_access::open;
}

}  // namespace

descriptor::~descriptor()
{
    if (is_open()) _close(m_number);
}

system_file::system_file(descriptor opened)
{
    if (!opened.is_open()) return;
    const HANDLE handle = reinterpret_cast<HANDLE>(_get_osfhandle(opened.number()));
    BY_HANDLE_FILE_INFORMATION about = {};
    if (GetFileType(handle) != FILE_TYPE_DISK || !GetFileInformationByHandle(handle, &about)) return;
    m_size = static_cast<std::int64_t>(joined(about.nFileSizeHigh, about.nFileSizeLow));
    m_identity = {about.dwVolumeSerialNumber, joined(about.nFileIndexHigh, about.nFileIndexLow),
                  static_cast<std::uint64_t>(m_size),
                  joined(about.ftLastWriteTime.dwHighDateTime, about.ftLastWriteTime.dwLowDateTime),
                  joined(about.ftCreationTime.dwHighDateTime, about.ftCreationTime.dwLowDateTime)};
    m_descriptor = std::move(opened);
}

std::int64_t system_file::read(char* to, std::size_t size)
{
    return _read(number(), to, static_cast<unsigned int>(std::min<std::size_t>(size, INT_MAX)));
}

file_access open_file(const strings::ustring8& path, system_file& file)
{
    const std::wstring name = std::filesystem::u8path(path).wstring();
    const file_access access = access_of(name);
    if (access != file_access::open) return access;
    int number = -1;
    _wsopen_s(&number, name.c_str(), _O_RDONLY | _O_BINARY | _O_NOINHERIT, _SH_DENYNO, 0);
    file = system_file(descriptor(number));
    return file.is_open() ? file_access::open : file_access::unreadable;
}

folder_listing files_in(const strings::ustring8& folder, std::size_t most)
{
    folder_listing found_files;
    WIN32_FIND_DATAW found = {};
    const std::wstring pattern = (std::filesystem::u8path(folder) / L"*").wstring();
    const HANDLE search = FindFirstFileW(pattern.c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) return found_files;
    const std::unique_ptr<void, decltype(&FindClose)> closer(search, &FindClose);
    do {
        if (++found_files.entries > most) break;
        // Links are left out: whether one leads to a file would have to be asked.
        constexpr DWORD not_files = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
        const bool is_file = (found.dwFileAttributes & not_files) == 0;
        if (is_file) found_files.names.push_back(std::filesystem::path(found.cFileName).u8string());
    } while (FindNextFileW(search, &found));
    return found_files;
}

#else

const int open_flags = O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;

namespace {

// A link counts as what it leads to, unless `flags` has AT_SYMLINK_NOFOLLOW. Most systems list an entry's type with its
// name. On none of them is the system asked about `.` and `..`.
bool is_regular(int folder, const dirent& entry, int flags)
{
#if defined(DT_UNKNOWN)
    if (entry.d_type == DT_REG || entry.d_type == DT_DIR) return entry.d_type == DT_REG;
#endif
    if (entry.d_name[0] == '.' && (entry.d_name[1] == '\0' || entry.d_name[1] == '.')) return false;
    struct stat status = {};
    return ::fstatat(folder, entry.d_name, &status, flags) == 0 && S_ISREG(status.st_mode);
}

// Takes over the folder's descriptor.
folder_listing list(int folder, std::size_t most, int flags)
{
    folder_listing found;
    if (folder < 0) return found;
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(::fdopendir(folder), &::closedir);
    if (entries == nullptr) {
        const bool is_out_of_memory = errno == ENOMEM;
        ::close(folder);
        if (is_out_of_memory) throw std::bad_alloc();
        return found;
    }
    for (;;) {
        const dirent* const entry = ::readdir(entries.get());  // NOLINT(concurrency-mt-unsafe): the folder is ours
        if (entry == nullptr || ++found.entries > most) return found;
        if (is_regular(folder, *entry, flags)) found.names.emplace_back(entry->d_name);
    }
}

constexpr int listing_flags = O_RDONLY | O_CLOEXEC | O_DIRECTORY;

}  // namespace

descriptor::~descriptor()
{
    if (is_open()) ::close(m_number);
}

system_file::system_file(descriptor opened)
{
    struct stat status = {};
    if (!opened.is_open() || ::fstat(opened.number(), &status) != 0 || !S_ISREG(status.st_mode)) return;
    m_size = status.st_size;
    m_identity = {static_cast<std::uint64_t>(status.st_dev), static_cast<std::uint64_t>(status.st_ino),
                  static_cast<std::uint64_t>(status.st_size), static_cast<std::uint64_t>(status.st_mtim.tv_sec),
                  static_cast<std::uint64_t>(status.st_mtim.tv_nsec)};
    m_descriptor = std::move(opened);
}

std::int64_t system_file::read(char* to, std::size_t size)
{
    for (;;) {
        const auto got = ::read(number(), to, size);
        if (got >= 0 || errno != EINTR) return got;
    }
}

file_access open_file(const strings::ustring8& path, system_file& file)
{
    struct stat status = {};
    if (::stat(path.c_str(), &status) != 0) return file_access::missing;
    if (!S_ISREG(status.st_mode)) return file_access::not_a_file;
    file = system_file(descriptor(::open(path.c_str(), open_flags)));
    return file.is_open() ? file_access::open : file_access::unreadable;
}

folder_listing files_in(const strings::ustring8& folder, std::size_t most)
{
    return list(::open(folder.empty() ? "." : folder.c_str(), listing_flags), most, 0);
}

folder_listing files_in(const descriptor& folder, std::size_t most)
{
    return list(::openat(folder.number(), ".", listing_flags), most, AT_SYMLINK_NOFOLLOW);
}

#endif

}  // namespace NUVEK_2_18::parser
