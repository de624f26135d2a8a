#include "tools/master_file.h"

#include <iostream>

#include "data_mapper/report/wording.h"
#include "platform/xml_stream_parser.h"

namespace data_mapper4::tool {

using NUVEK_2_18::parser::xml_stream_parser;

namespace {

// The code and, if there is one, the line.
ustring8 outcome(map_collection& maps, map_error_t result)
{
    const ustring8 code = maps.map_error_as_string(result);
    return result.line() == 0 ? code : code + ", line " + std::to_string(result.line());
}

}  // namespace

NUVEK_2_18::strings::ustring16 parser_path(const std::filesystem::path& file)
{
    const std::wstring path = load_path(file);
    return {path.begin(), path.end()};
}

ustring8 command_word(std::string_view text)
{
    return text.find(' ') == ustring8::npos ? printable(text) : '"' + printable(text) + '"';
}

ustring8 counted(std::size_t number, const ustring8& what)
{
    return (number == 0 ? "no" : std::to_string(number)) + ' ' + what + (number == 1 ? "" : "s");
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

loaded_master load_master(const std::filesystem::path& file)
{
    loaded_master master = {{}, {}, success};
    if (!can_be_opened(file)) {
        master.code = report_missing(file);
        return master;
    }
    check_options options;
    options.max_findings = 0;
    master.report = load_maps(master.maps, file, options);
    if (master.report.errors() == 0) return master;
    master.code = failure;
    // A set that exceeds the limits of the check is not loaded at all: load has no limits.
    map_error_t result;
    if (master.report.is_complete()) result = master.maps.load(load_path(file));
    const bool has_code = result.type() != map_error_t::no_error;
    std::cerr << printable(file.u8string()) << ": "
              << (has_code ? outcome(master.maps, result) : counted(master.report.errors(), "error"))
              << "; run: data_mapper check " << command_word(file.u8string()) << '\n';
    return master;
}

}  // namespace data_mapper4::tool
