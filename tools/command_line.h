// The grammar of the command line.
#pragma once

#include <vector>

#include "tools/commands.h"

namespace data_mapper4::tool {

// Runs the command that the arguments name. Help and the version go to standard output, wrong use to standard error.
exit_code run_command_line(std::vector<ustring8> arguments);

}  // namespace data_mapper4::tool
