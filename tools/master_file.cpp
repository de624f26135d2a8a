#include "tools/master_file.h"

#include <iostream>

#include "data_mapper/report/wording.h"
#include "platform/xml_stream_parser.h"

namespace data_mapper4::tool {

using NUVEK_2_18::parser::xml_stream_parser;

NUVEK_2_18::strings::ustring16 parser_path(const std::filesystem::path& file)
{
    const std::wstring path = load_path(file);
    return {path.begin(), path.end()};
}

ustring8 command_word(std::string_view text)
{
    return text.find(' ') == ustring8::npos ? printable(text) : '"' + printable(text) + '"';
}

// A load's result does not tell: file_not_found may also be that of an include.
bool can_be_opened(const std::filesystem::path& file)
{
    xml_stream_parser parser(parser_path(file), xml_stream_parser::header_optional);
    return parser.error() != xml_stream_parser::file_not_found;
}

exit_code report_missing(const std::filesystem::path& file)
{
    std::cerr << printable(file.u8string()) << ": error: no such file, or it cannot be opened\n";
    return trouble;
}

exit_code load_master(map_collection& maps, const std::filesystem::path& file)
{
    if (!can_be_opened(file)) return report_missing(file);
    map_error_t result = maps.load(load_path(file));
    if (result.type() == map_error_t::no_error) return success;
    std::cerr << printable(file.u8string()) << ": " << maps.map_error_as_string(result);
    if (result.line() != 0) std::cerr << ", line " << result.line();
    std::cerr << "; run: data_mapper check " << command_word(file.u8string()) << '\n';
    return failure;
}

}  // namespace data_mapper4::tool
