// Internal: the command line, standard output and the terminal, as the system has them. Only for the command-line tool;
// not part of the library.
#pragma once

#include <streambuf>
#include <system_error>
#include <vector>

#include "platform/ustring.h"

namespace NUVEK_2_18::console {

// Returns the arguments after the program's name: in UTF-8 on Windows, and elsewhere the bytes as they were given.
std::vector<strings::ustring8> arguments(int argc, const char* const* argv);

// Returns true if standard output is a terminal that shows colors. On Windows, this switches them on.
bool is_color_terminal();

// Standard output in UTF-8, which remembers why a write failed. While it lives, std::cout writes to it.
class standard_output : public std::streambuf
{
public:
    standard_output();
    ~standard_output() override;
    standard_output(const standard_output&) = delete;
    standard_output& operator=(const standard_output&) = delete;

    // Writes what is buffered. Returns the reason if that or an earlier write failed. A pipe that its reader has closed
    // is no failure: the reader has seen enough.
    std::error_code finish();

protected:
    int_type overflow(int_type letter) override;
    std::streamsize xsputn(const char* text, std::streamsize size) override;
    int sync() override;

private:
    bool note(bool is_written);

    std::streambuf* m_previous;    // of std::cout
    unsigned int m_code_page = 0;  // of the console before, on Windows
    bool m_is_open = true;         // false after a failed write; nothing more is written
    std::error_code m_error;
};

}  // namespace NUVEK_2_18::console
