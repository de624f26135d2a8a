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

// "no errors", "1 error", "2 errors".
ustring8 counted(std::size_t number, const ustring8& what);

bool can_be_opened(const std::filesystem::path& file);

// Says that the file cannot be opened.
exit_code report_missing(const std::filesystem::path& file);

struct loaded_master
{
    map_collection maps;  // what a host gets, errors or not
    load_report report;   // without findings
    exit_code code;
};

// Loads a master file. If anything is wrong with it or with what it includes, says so in one line. Unless the exit
// code is `trouble`, what was loaded is worth showing even then.
loaded_master load_master(const std::filesystem::path& file);

}  // namespace data_mapper4::tool
