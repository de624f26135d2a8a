#include "platform/folder_bound.h"

#include <algorithm>
#include <string_view>
#include <utility>

#if defined(_WIN32)
#if !defined(NOMINMAX)
#define NOMINMAX
#endif
#include <io.h>
#include <windows.h>

#include <filesystem>
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <new>
#include <vector>
#endif

namespace NUVEK_2_18::parser {

using strings::ustring8;

namespace {

bool begins_with(const ustring8& text, const ustring8& beginning)
{
    return text.compare(0, beginning.size(), beginning) == 0;
}

// Whether the path is that of something below the folder; neither ends with a separator. The rest then begins with one.
bool is_below(const ustring8& path, const ustring8& folder)
{
    return begins_with(path, folder) && path[folder.size()] == system_file::separator;
}

// Takes the next name off a path, with the separators before it. Returns an empty name at the end.
std::string_view take_name(std::string_view& path)
{
    constexpr const char* separators = system_file::separator == '/' ? "/" : "/\\";
    const std::size_t begin = std::min(path.find_first_not_of(separators), path.size());
    const std::size_t end = std::min(path.find_first_of(separators, begin), path.size());
    const std::string_view name = path.substr(begin, end - begin);
    path.remove_prefix(end);
    return name;
}

// Whether the names of a path lead out of a folder, whatever they name. The path begins `depth` folders below it.
bool leads_out(std::string_view path, std::size_t depth)
{
    for (;;) {
        const std::string_view name = take_name(path);
        if (name.empty()) return false;
        if (name == "..") {
            if (depth-- == 0) return true;
        } else if (name != ".") {
            ++depth;
        }
    }
}

}  // namespace

bool folder_bound::find_rest(const ustring8& path, ustring8& rest) const
{
    const ustring8 whole = absolute(path);
    if (!m_is_found || !is_below(whole, m_prefix)) return false;
    rest = whole.substr(m_prefix.size());
    return true;
}

#if defined(_WIN32)

namespace {

std::wstring wide(const ustring8& path)
{
    return std::filesystem::u8path(path).wstring();
}

// The path without links, in the one form that the system has for it; empty if the system cannot say.
ustring8 final_path(HANDLE file)
{
    std::wstring found(system_file::longest_path + 1, L'\0');
    found.resize(GetFinalPathNameByHandleW(file, found.data(), static_cast<DWORD>(found.size()), 0));
    if (!found.empty() && found.back() == L'\\') found.pop_back();  // after a drive
    return std::filesystem::path(found).u8string();
}

ustring8 final_path(const ustring8& folder)
{
    constexpr DWORD shared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const HANDLE file =
        CreateFileW(wide(folder).c_str(), 0, shared, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (file == INVALID_HANDLE_VALUE) return {};
    ustring8 found = final_path(file);
    CloseHandle(file);
    return found;
}

// Whether the rest of a path can be followed without a link.
file_access follow(const ustring8& prefix, const ustring8& rest)
{
    for (std::size_t end = 0; end != ustring8::npos;) {
        end = rest.find(system_file::separator, end + 1);
        const DWORD attributes = GetFileAttributesW(wide(prefix + rest.substr(0, end)).c_str());
        if (attributes == INVALID_FILE_ATTRIBUTES) return file_access::missing;
        if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) return file_access::outside;
    }
    return file_access::open;
}

}  // namespace

folder_bound::folder_bound(const ustring8& folder, const ustring8& base)
    : m_real(final_path(folder.empty() ? "." : folder))
{
    const ustring8 path = absolute(base.empty() ? "." : base) + system_file::separator;
    for (std::size_t at = path.find(system_file::separator); at != ustring8::npos && !m_is_found && !m_real.empty();) {
        m_is_found = final_path(path.substr(0, at + 1)) == m_real;
        if (m_is_found) m_prefix = path.substr(0, at);
        at = path.find(system_file::separator, at + 1);
    }
    for (std::string_view rest = base; !take_name(rest).empty();) ++m_base_names;
    if (!m_is_found) return;
    for (std::string_view rest = std::string_view(path).substr(m_prefix.size()); !take_name(rest).empty();)
        ++m_base_depth;
}

// Checks the names after the base as they are written, because the system removes `..` when it makes a path absolute.
bool folder_bound::leads_out(std::string_view path) const
{
    for (std::size_t i = 0; i < m_base_names; ++i) take_name(path);
    return parser::leads_out(path, m_base_depth);
}

// Without `..`. Asks the system itself: std::filesystem::absolute of libstdc++ mistakes the beginning of `\\?\` and
// `\\server` for a folder.
ustring8 folder_bound::absolute(const ustring8& path) const
{
    const std::wstring name = wide(path);
    std::wstring full(GetFullPathNameW(name.c_str(), 0, nullptr, nullptr), L'\0');
    full.resize(GetFullPathNameW(name.c_str(), static_cast<DWORD>(full.size()), full.data(), nullptr));
    return std::filesystem::path(full).u8string();
}

file_access folder_bound::open_file(const ustring8& path, system_file& file) const
{
    ustring8 rest;
    if (!find_rest(path, rest) || leads_out(path)) return file_access::outside;
    file_access access = follow(m_prefix, rest);
    if (access != file_access::open) return access;
    access = parser::open_file(m_prefix + rest, file);
    if (access != file_access::open) return access;
    if (is_below(final_path(reinterpret_cast<HANDLE>(_get_osfhandle(file.number()))), m_real)) return access;
    file = system_file();
    return file_access::outside;
}

folder_listing folder_bound::files_in(const ustring8& folder, std::size_t most) const
{
    ustring8 rest;
    // A name is appended because the folder may be the bound itself.
    if (!find_rest((folder.empty() ? "." : folder) + system_file::separator + 'x', rest) || leads_out(folder))
        return {};
    rest.resize(rest.rfind(system_file::separator));
    if (!rest.empty() && follow(m_prefix, rest) != file_access::open) return {};
    return parser::files_in(m_prefix + rest, most);
}

#else

namespace {

#if defined(O_PATH)
constexpr int folder_flags = O_PATH | O_DIRECTORY | O_CLOEXEC;
#else
constexpr int folder_flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
#endif

// No ordinary path has more names, including those in its links. The limit is needed because all folders on the way are
// open at the same time. A path with more names counts as missing, and so does one with more links or bytes than the
// system itself follows.
constexpr std::size_t most_names = 100;
constexpr std::size_t most_links = 40;

// Follows a path from the folder on, name by name.
class walk
{
public:
    // `prefix` and `real` are the folder's paths, for links that name it.
    walk(const descriptor& root, const ustring8& prefix, const ustring8& real)
        : m_root(root), m_prefix(prefix), m_real(real)
    {
    }

    // Returns open for a regular file, and not_a_file for anything else that exists.
    file_access follow(ustring8 path)
    {
        m_path = std::move(path);
        m_rest = m_path;
        for (std::size_t names = 0; names != most_names; ++names) {
            const ustring8 name(take_name(m_rest));
            if (name.empty()) return file_access::not_a_file;
            const file_access access = name == "." ? file_access::not_a_file : step(name);
            if (access != file_access::not_a_file || !m_name.empty()) return access;
        }
        return file_access::missing;
    }

    // The folder that was reached.
    const descriptor& folder() const { return m_folders.empty() ? m_root : m_folders.back(); }

    // The last name of the path, if that is not a folder.
    const ustring8& name() const { return m_name; }

private:
    // Returns not_a_file to go on with the rest.
    file_access step(const ustring8& name)
    {
        if (name == "..") return leave();
        struct stat status = {};
        if (::fstatat(folder().number(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) return file_access::missing;
        if (S_ISLNK(status.st_mode)) return follow_link(name);
        if (S_ISDIR(status.st_mode)) return enter(name);
        if (!m_rest.empty()) return file_access::missing;
        m_name = name;
        return S_ISREG(status.st_mode) ? file_access::open : file_access::not_a_file;
    }

    file_access enter(const ustring8& name)
    {
        descriptor entered(::openat(folder().number(), name.c_str(), folder_flags | O_NOFOLLOW));
        const bool are_too_many = !entered.is_open() && (errno == EMFILE || errno == ENFILE);
        if (!entered.is_open()) return are_too_many ? file_access::unreadable : file_access::missing;
        m_folders.push_back(std::move(entered));
        return file_access::not_a_file;
    }

    // Goes back to the folder it came from, even if the one that it leaves has been moved elsewhere meanwhile.
    file_access leave()
    {
        if (m_folders.empty()) return file_access::outside;
        m_folders.pop_back();
        return file_access::not_a_file;
    }

    file_access follow_link(const ustring8& name)
    {
        ustring8 target(system_file::longest_path + 1, '\0');
        const auto size = ::readlinkat(folder().number(), name.c_str(), target.data(), target.size());
        if (size <= 0 || ++m_links > most_links) return file_access::missing;
        target.resize(static_cast<std::size_t>(size));
        target += m_rest;
        if (target.size() > system_file::longest_path) return file_access::missing;
        if (target.front() == '/' && !enter_root(target)) return file_access::outside;
        m_path = std::move(target);
        m_rest = m_path;
        return file_access::not_a_file;
    }

    // Goes to the folder itself if an absolute path leads into it, and leaves the rest in `target`.
    bool enter_root(ustring8& target)
    {
        for (const ustring8& folder : {m_real, m_prefix}) {
            if (!is_below(target, folder) || leads_out(std::string_view(target).substr(folder.size()), 0)) continue;
            target.erase(0, folder.size());
            m_folders.clear();
            return true;
        }
        return false;
    }

    const descriptor& m_root;
    const ustring8& m_prefix;
    const ustring8& m_real;
    std::vector<descriptor> m_folders;  // those entered below the root
    ustring8 m_path;                    // with the targets of the links that were followed
    std::string_view m_rest;            // the part of that which is left to follow
    ustring8 m_name;
    std::size_t m_links = 0;
};

bool is_same(const struct stat& a, const struct stat& b)
{
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

// Empty if the system cannot say.
ustring8 real_path(const ustring8& folder)
{
    char path[PATH_MAX] = {};
    if (::realpath(folder.c_str(), path) != nullptr) return path;
    if (errno == ENOMEM) throw std::bad_alloc();
    return {};
}

}  // namespace

folder_bound::folder_bound(const ustring8& folder, const ustring8& base)
    : m_real(real_path(folder.empty() ? "." : folder)),
      m_root(::open(folder.empty() ? "." : folder.c_str(), folder_flags)),
      m_current(real_path("."))
{
    if (m_real == "/") m_real.clear();
    struct stat root = {};
    if (!m_root.is_open() || ::fstat(m_root.number(), &root) != 0) return;
    const ustring8 path = absolute(base);
    for (std::string_view rest = path; !m_is_found;) {
        m_prefix = path.substr(0, path.size() - rest.size());
        struct stat status = {};
        if (::stat(m_prefix.empty() ? "/" : m_prefix.c_str(), &status) != 0) return;
        m_is_found = is_same(status, root);
        if (take_name(rest).empty()) return;
    }
}

// Empty if the current folder is not known.
ustring8 folder_bound::absolute(const ustring8& path) const
{
    if (begins_with(path, "/")) return path;
    return m_current.empty() ? ustring8() : m_current + '/' + path;
}

file_access folder_bound::open_file(const ustring8& path, system_file& file) const
{
    ustring8 rest;
    if (!find_rest(path, rest) || leads_out(rest, 0)) return file_access::outside;
    walk followed(m_root, m_prefix, m_real);
    const file_access access = followed.follow(std::move(rest));
    if (access != file_access::open) return access;
    file =
        system_file(descriptor(::openat(followed.folder().number(), followed.name().c_str(), open_flags | O_NOFOLLOW)));
    return file.is_open() ? access : file_access::unreadable;
}

folder_listing folder_bound::files_in(const ustring8& folder, std::size_t most) const
{
    ustring8 rest;
    if (!find_rest((folder.empty() ? "." : folder) + '/', rest) || leads_out(rest, 0)) return {};
    walk followed(m_root, m_prefix, m_real);
    const bool is_folder = followed.follow(std::move(rest)) == file_access::not_a_file && followed.name().empty();
    return is_folder ? parser::files_in(followed.folder(), most) : folder_listing();
}

#endif

}  // namespace NUVEK_2_18::parser
