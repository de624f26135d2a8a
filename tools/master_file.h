// Opens and loads master files.
#pragma once

#include <filesystem>
#include <string_view>

#include "tools/commands.h"

namespace data_mapper4::tool {

// The path in UTF-16 units, as the library wants it.
NUVEK_2_18::strings::ustring16 parser_path(const std::filesystem::path& file);

// A word of a command that a message suggests: in quotes if it contains a space.
ustring8 command_word(std::string_view text);

bool can_be_opened(const std::filesystem::path& file);

// Says that the file cannot be opened.
exit_code report_missing(const std::filesystem::path& file);

// Loads the file. Unless the result is no_error, says so. What is loaded is worth showing in either case, except if the
// exit code is that of trouble.
exit_code load_master(map_collection& maps, const std::filesystem::path& file);

}  // namespace data_mapper4::tool
