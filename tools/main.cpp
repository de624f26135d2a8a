// data_mapper, the command-line tool.
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <new>
#include <stdexcept>

#include "platform/console.h"
#include "tools/command_line.h"

namespace {

using namespace data_mapper4::tool;

// Ends the tool where it is: there is nothing to undo, and destructors that need memory would end it without a message.
[[noreturn]] void end_without_memory()
{
    static_cast<void>(std::fputs("data_mapper: out of memory\n", stderr));
    std::_Exit(trouble);
}

exit_code run(int argc, char** argv, NUVEK_2_18::console::standard_output& output)
{
    const exit_code code = run_command_line(NUVEK_2_18::console::arguments(argc, argv));
    const std::error_code error = output.finish();
    if (!error) return code;
    std::cerr << "data_mapper: cannot write the output: " << error.message() << '\n';
    return trouble;
}

}  // namespace

int main(int argc, char** argv)
{
    std::set_new_handler(end_without_memory);
    NUVEK_2_18::console::standard_output output;
    try {
        return run(argc, argv, output);
    } catch (const std::bad_alloc&) {
        end_without_memory();
    } catch (const std::length_error&) {
        end_without_memory();
    } catch (const std::exception& error) {
        std::cerr << "data_mapper: " << error.what() << '\n';
        return trouble;
    }
}
