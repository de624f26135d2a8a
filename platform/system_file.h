// Internal: files as the system knows them. Paths are in UTF-8.
#pragma once

#include <array>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "platform/ustring.h"

namespace NUVEK_2_18::parser {

enum class file_access
{
    open,
    missing,
    not_a_file,  // a folder, a device, a pipe or a socket
    unreadable,
    outside,  // not in the folder that files must be in; whether it exists was not asked
};

// Equal for two open files only if they are the same file and it has not changed in between, whatever their paths.
using file_identity = std::array<std::uint64_t, 5>;

// A file descriptor of the C library; negative if there is none.
class descriptor
{
public:
    explicit descriptor(int number = -1) : m_number(number) {}
    ~descriptor();
    descriptor(descriptor&& other) noexcept : m_number(std::exchange(other.m_number, -1)) {}
    descriptor& operator=(descriptor&& other) noexcept
    {
        std::swap(m_number, other.m_number);
        return *this;
    }
    descriptor(const descriptor&) = delete;
    descriptor& operator=(const descriptor&) = delete;

    bool is_open() const { return m_number >= 0; }
    int number() const { return m_number; }

private:
    int m_number;
};

// A regular file that is open for reading; not open if the descriptor is that of anything else.
class system_file
{
public:
#if defined(_WIN32)
    static constexpr char separator = '\\';
    static constexpr char other_separator = '/';
    static constexpr std::size_t longest_path = 32767;  // in UTF-16 units
#else
    static constexpr char separator = '/';
    static constexpr char other_separator = '\\';
    static constexpr std::size_t longest_path = PATH_MAX - 1;  // in bytes; a UTF-16 unit takes at least one
#endif

    system_file() = default;
    explicit system_file(descriptor opened);

    bool is_open() const
    {
        return m_descriptor.is_open();
    }
    int number() const
    {
        return m_descriptor.number();
    }

    // In bytes, as the system reports it when the file is opened.
    std::int64_t size() const
    {
        return m_size;
    }
    const file_identity& identity() const
    {
        return m_identity;
    }

    // Returns how many bytes were read: 0 at the end, negative after a failure.
    std::int64_t read(char* to, std::size_t size);

private:
    descriptor m_descriptor;
    std::int64_t m_size = 0;
    file_identity m_identity = {};
};

// Opens the regular file that a path names, and returns the outcome. Nothing else is opened.
file_access open_file(const strings::ustring8& path, system_file& file);

// The regular files in a folder.
struct folder_listing
{
    std::vector<strings::ustring8> names = {};  // in any order
    std::size_t entries = 0;                    // of all kinds; one more than were looked at if there are more
};

// Looks at the first `most` entries of a folder. An empty path is the current folder.
folder_listing files_in(const strings::ustring8& folder, std::size_t most);

#if !defined(_WIN32)

// The same for an open folder, except that links are left out.
folder_listing files_in(const descriptor& folder, std::size_t most);

// For the open function: a pipe must not block the host, and a terminal must not become its controlling terminal.
extern const int open_flags;

#endif

}  // namespace NUVEK_2_18::parser
