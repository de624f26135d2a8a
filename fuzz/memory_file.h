// A file in memory that can be opened by a path, so that a fuzz target's documents never touch a disk (Linux).
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

// What a fuzz target asks for; a failure is a finding.
inline void require(bool condition)
{
    if (!condition) std::abort();
}

inline std::string_view text_of(const std::uint8_t* data, std::size_t size)
{
    return {reinterpret_cast<const char*>(data), size};
}

class memory_file
{
public:
    // The descriptor, and with it the path, is the given number.
    explicit memory_file(int number) : m_descriptor(number)
    {
        const int made = memfd_create("fuzz", MFD_CLOEXEC);
        require(made >= 0 && dup2(made, number) == number);
        close(made);
    }
    memory_file(const memory_file&) = delete;
    memory_file& operator=(const memory_file&) = delete;
    ~memory_file() { close(m_descriptor); }

    std::string path() const { return "/proc/self/fd/" + std::to_string(m_descriptor); }

    void write(std::string_view content) const
    {
        require(ftruncate(m_descriptor, 0) == 0);
        require(pwrite(m_descriptor, content.data(), content.size(), 0) == static_cast<ssize_t>(content.size()));
    }

private:
    int m_descriptor;
};
