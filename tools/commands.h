// The commands of the tool. Each writes its result to standard output, what went wrong to standard error, and returns the
// exit code.
#pragma once

#include <filesystem>
#include <vector>

#include "data_mapper/load_report.h"

namespace data_mapper4::tool {

// docs/tool.md says what each one means.
enum exit_code : int
{
    success = 0,
    failure = 1,  // an error in the files, or a name that they do not have
    trouble = 2,  // wrong use, a master file that cannot be opened, a failed write, no memory
};

enum class color_mode
{
    automatic,  // if standard output is a terminal, and the environment does not say otherwise
    always,
    never,
};

struct command_options
{
    std::vector<std::filesystem::path> files;  // at least one; just one for all commands except check
    std::vector<ustring8> names;               // of a map, one of its items, and an attribute; for get
    bool is_json = false;
    bool is_werror = false;  // a warning fails a check
    color_mode color = color_mode::automatic;
    check_options check;
};

exit_code run_check(const command_options& options);
exit_code run_list(const command_options& options);
exit_code run_get(const command_options& options);
exit_code run_dump(const command_options& options);
exit_code run_nodes(const command_options& options);

}  // namespace data_mapper4::tool
