#include <cstdlib>
#include <iostream>
#include <set>

#include "platform/console.h"
#include "tools/commands.h"
#include "tools/json_output.h"
#include "tools/master_file.h"

namespace data_mapper4::tool {

namespace {

struct totals
{
    std::set<ustring8> files;
    std::size_t maps = 0;
    std::size_t items = 0;
    std::size_t errors = 0;
    std::size_t warnings = 0;
    bool is_complete = true;
    bool is_missing = false;  // whether a master file cannot be opened
};

void add(const load_report& report, totals& sums)
{
    for (const checked_file& file : report.files()) {
        if (file.result.type() != map_error_t::file_not_found) sums.files.insert(file.path);
    }
    sums.maps += report.maps().size();
    for (const checked_map& map : report.maps()) sums.items += map.items;
    sums.errors += report.errors();
    sums.warnings += report.warnings();
    sums.is_complete = sums.is_complete && report.is_complete();
}

void print_summary(const totals& sums)
{
    std::cout << counted(sums.files.size(), "file") << ", " << counted(sums.maps, "map") << ", "
              << counted(sums.items, "item") << ": " << counted(sums.errors, "error");
    if (sums.warnings != 0) std::cout << ", " << counted(sums.warnings, "warning");
    if (!sums.is_complete) std::cout << "; the check is incomplete";
    std::cout << '\n';
}

bool is_colored(color_mode mode)
{
    if (mode != color_mode::automatic) return mode == color_mode::always;
    const char* const no_color = std::getenv("NO_COLOR");  // NOLINT(concurrency-mt-unsafe): there is one thread
    return (no_color == nullptr || *no_color == '\0') && NUVEK_2_18::console::is_color_terminal();
}

}  // namespace

exit_code run_check(const command_options& options)
{
    totals sums;
    ordered_json output = {
        {"version", json_version}, {"errors", 0}, {"warnings", 0}, {"masters", ordered_json::array()}};
    const bool is_in_color = is_colored(options.color);
    for (const auto& file : options.files) {
        const load_report report = check_maps(file, options.check);
        add(report, sums);
        sums.is_missing = sums.is_missing || report.files().empty();
        if (options.is_json) output["masters"].push_back(json_of(report, file));
        if (!options.is_json) std::cout << report.text(is_in_color);
    }
    output["errors"] = sums.errors;
    output["warnings"] = sums.warnings;
    if (options.is_json) print(output);
    if (!options.is_json) print_summary(sums);
    if (sums.is_missing) return trouble;
    return sums.errors != 0 || (options.is_werror && sums.warnings != 0) ? failure : success;
}

}  // namespace data_mapper4::tool
