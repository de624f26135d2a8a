// What the fuzz targets share: a check, and files in memory (Linux only), so that documents never touch a disk.
#pragma once

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <string_view>

// An assertion of a fuzz target; a failure is a finding.
inline void require(bool condition)
{
    if (!condition) std::abort();
}

// Makes `content` the whole content of the file /proc/self/fd/<number>.
inline void write_memory_file(int number, std::string_view content)
{
    if (fcntl(number, F_GETFD) < 0) {
        const int made = memfd_create("fuzz", MFD_CLOEXEC);
        require(made >= 0 && dup2(made, number) == number && close(made) == 0);
    }
    require(ftruncate(number, 0) == 0);
    require(pwrite(number, content.data(), content.size(), 0) == static_cast<ssize_t>(content.size()));
}
