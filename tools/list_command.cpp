#include <algorithm>
#include <array>
#include <iostream>

#include "data_mapper/report/wording.h"
#include "platform/display_width.h"
#include "platform/unicode.h"
#include "tools/commands.h"
#include "tools/json_output.h"
#include "tools/master_file.h"

namespace data_mapper4::tool {

namespace {

using row = std::array<ustring8, 5>;

ustring8 joined(const std::vector<ustring8>& names)
{
    ustring8 text;
    for (const ustring8& name : names) text += (text.empty() ? "" : ",") + name;
    return text.empty() ? "-" : text;
}

row row_of(const checked_map& map, map_collection& maps)
{
    const ustring8 where = printable(map.declared.file) + ':' + std::to_string(map.declared.line);
    return {printable(map.name), maps.map_type_as_string(map.kind), std::to_string(map.items),
            joined(maps.keys(map.name)), where};
}

std::size_t width(const ustring8& text)
{
    std::size_t columns = 0;
    const char* at = text.data();
    for (const char* const end = at + text.size(); at != end;) {
        columns += NUVEK_2_18::unicode::display_width(NUVEK_2_18::unicode::take_utf8(at, end));
    }
    return columns;
}

// In columns. A wider text does not widen its column; otherwise one long name would pad all lines.
constexpr std::size_t widest_column = 80;

void print_aligned(const std::vector<row>& rows)
{
    std::array<std::size_t, std::tuple_size_v<row>> widths = {};
    for (const row& line : rows) {
        for (std::size_t i = 0; i < line.size(); ++i)
            widths[i] = std::max(widths[i], std::min(width(line[i]), widest_column));
    }
    for (const row& line : rows) {
        for (std::size_t i = 0; i + 1 < line.size(); ++i) {
            std::cout << line[i] << ustring8(widths[i] - std::min(width(line[i]), widths[i]) + 2, ' ');
        }
        std::cout << line.back() << '\n';
    }
}

}  // namespace

exit_code run_list(const command_options& options)
{
    auto [maps, report, code] = load_master(options.files.front());
    if (code == trouble) return code;
    std::vector<row> rows;
    ordered_json list = ordered_json::array();
    for (const checked_map& map : report.maps()) {
        rows.push_back(row_of(map, maps));
        list.push_back(json_of(map));
        list.back()["keys"] = maps.keys(map.name);
    }
    if (options.is_json) {
        print(ordered_json{{"version", json_version}, {"maps", std::move(list)}});
    } else {
        print_aligned(rows);
    }
    return code;
}

}  // namespace data_mapper4::tool
