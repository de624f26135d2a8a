#include "platform/console.h"

#include <cerrno>
#include <cstdio>
#include <iostream>

#if defined(_WIN32)
#if !defined(NOMINMAX)
#define NOMINMAX
#endif
#include <io.h>
#include <windows.h>
// After windows.h, which it needs.
#include <shellapi.h>

#include <cstdlib>
#include <memory>
#else
#include <unistd.h>
#endif

namespace NUVEK_2_18::console {

#if defined(_WIN32)

namespace {

strings::ustring8 utf8_of(const wchar_t* text)
{
    const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
    strings::ustring8 result(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text, -1, result.data(), size, nullptr, nullptr);
    result.resize(result.size() - 1);  // without the final zero
    return result;
}

unsigned int swap_code_page(unsigned int code_page)
{
    const unsigned int previous = GetConsoleOutputCP();
    if (previous != 0) SetConsoleOutputCP(code_page);
    return previous;
}

// The C library has no code of its own for the second of these.
bool is_pipe_closed()
{
    return errno == EPIPE || _doserrno == ERROR_NO_DATA;
}

}  // namespace

// The system's own command line: argv is in the code page, which lacks most characters.
std::vector<strings::ustring8> arguments(int /*argc*/, const char* const* /*argv*/)
{
    int count = 0;
    const std::unique_ptr<wchar_t*, decltype(&LocalFree)> words(CommandLineToArgvW(GetCommandLineW(), &count),
                                                                &LocalFree);
    std::vector<strings::ustring8> result;
    for (int i = 1; words != nullptr && i < count; ++i) result.push_back(utf8_of(words.get()[i]));
    return result;
}

bool is_color_terminal()
{
    const HANDLE terminal = GetStdHandle(STD_OUTPUT_HANDLE);
    DWORD mode = 0;
    if (GetConsoleMode(terminal, &mode) == 0) return false;
    return SetConsoleMode(terminal, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

#else

namespace {

unsigned int swap_code_page(unsigned int code_page)
{
    return code_page;
}

bool is_pipe_closed()
{
    return errno == EPIPE;
}

}  // namespace

std::vector<strings::ustring8> arguments(int argc, const char* const* argv)
{
    return argc > 1 ? std::vector<strings::ustring8>(argv + 1, argv + argc) : std::vector<strings::ustring8>();
}

bool is_color_terminal()
{
    return ::isatty(STDOUT_FILENO) == 1;
}

#endif

standard_output::standard_output() : m_previous(std::cout.rdbuf(this)), m_code_page(swap_code_page(65001))  // UTF-8
{
#if defined(_WIN32)
    // Otherwise unbuffered on a console, which then gets the bytes of a character one by one.
    static_cast<void>(std::setvbuf(stdout, nullptr, _IOFBF, std::size_t{1} << 16));
#endif
}

standard_output::~standard_output()
{
    swap_code_page(m_code_page);
    std::cout.rdbuf(m_previous);
}

std::error_code standard_output::finish()
{
    sync();
    return m_error;
}

standard_output::int_type standard_output::overflow(int_type letter)
{
    const char text = traits_type::to_char_type(letter);
    return xsputn(&text, 1) == 1 ? letter : traits_type::eof();
}

std::streamsize standard_output::xsputn(const char* text, std::streamsize size)
{
    const auto bytes = static_cast<std::size_t>(size);
    return m_is_open && note(std::fwrite(text, 1, bytes, stdout) == bytes) ? size : 0;
}

int standard_output::sync()
{
    return m_is_open && note(std::fflush(stdout) == 0) ? 0 : -1;
}

bool standard_output::note(bool is_written)
{
    if (is_written) return true;
    if (!is_pipe_closed()) m_error = std::error_code(errno, std::generic_category());
    m_is_open = false;
    return false;
}

}  // namespace NUVEK_2_18::console
