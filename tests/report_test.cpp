// What a check says about faulty files, and what load_maps makes of them.
#include <gtest/gtest.h>

#include <chrono>

#include "data_mapper/report/rules.h"
#include "report_rows.h"

using namespace data_mapper4;
using documents::check;
using documents::group;
using report_rows::files;
using report_rows::world;

namespace {

struct opened : map_collection
{
    using map_collection::m_base_dir;
    using map_collection::m_file;
};

std::string rendered(const file_place& place)
{
    if (place.line == 0) return place.file;
    return place.file + ':' + std::to_string(place.line) + ':' + std::to_string(place.column) + '-' +
           std::to_string(place.end_line) + ':' + std::to_string(place.end_column);
}

// PLACE LEVEL CODE MESSAGE [RULE] = HINT | PLACE RELATED | PLACE include, for each finding on a line.
std::string rendered(const load_report& report)
{
    std::string text;
    for (const finding& each : report.findings()) {
        map_error_t code;
        code.type(each.code);
        text += (text.empty() ? "" : "\n") + rendered(each.where);
        text += (each.level == severity::error ? " error " : " warning ") + map_collection().map_error_as_string(code);
        text += ' ' + each.message + " [" + each.rule + ']' + (each.hint.empty() ? "" : " = " + each.hint);
        for (const related_place& other : each.related) text += " | " + rendered(other.where) + ' ' + other.message;
        for (const file_place& include : each.included_by) text += " | " + rendered(include) + " include";
    }
    if (report.errors() + report.warnings() == report.findings().size()) return text;
    return text + " of " + std::to_string(report.errors()) + '+' + std::to_string(report.warnings());
}

// Also loads the files: the check and the load agree, and a collection becomes the loaded one or stays as it is.
std::string found(const files& set, const check_options& options = {})
{
    return report_rows::outcome(set, options, [](const std::filesystem::path& master, const check_options& limited) {
        map_collection maps;
        map_collection fresh;
        const load_report report = load_maps(maps, master, limited);
        map_error_t result = fresh.load(load_path(master));
        if (limited.within.empty() && report.is_complete()) {
            EXPECT_EQ(report.result().type(), result.type());
            EXPECT_EQ(report.result().line(), result.line());
            EXPECT_EQ(report.maps().size(), fresh.maps().size());
        }
        EXPECT_EQ(maps.maps(), report.errors() == 0 ? fresh.maps() : map_collection().maps());
        return rendered(report) + (report.is_complete() ? "" : " ...");
    });
}

}  // namespace

TEST(Report, ExplainsTheFaultOfEachExampleAndNothingOnceItIsMended)
{
    std::vector<std::string> shown;
    for (const report_rows::row& each : report_rows::rows) {
        if (shown.empty() || shown.back() != each.rule) shown.push_back(each.rule);
        if (each.wrong.empty()) continue;
        EXPECT_EQ(found(each.wrong, each.options), each.findings);
        const files mended = report_rows::mended(each);
        ASSERT_FALSE(mended.empty()) << each.before;
        EXPECT_EQ(found(mended, each.options), "") << mended.front().second;
    }
    std::vector<std::string> all;
    for (int i = 0; i <= static_cast<int>(rule::empty_map); ++i) all.emplace_back(traits_of(static_cast<rule>(i)).name);
    EXPECT_EQ(shown, all);
}
