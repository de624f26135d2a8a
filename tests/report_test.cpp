// What a check says about faulty files, and what load_maps makes of them.
#include <gtest/gtest.h>

#include <chrono>
#include <tuple>

#include "data_mapper/report/rules.h"
#include "report_rows.h"

using namespace data_mapper4;
using documents::check;
using documents::group;
using report_rows::files;
using report_rows::world;

namespace {

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
        text += (text.empty() ? "" : "\n") + rendered(each.where);
        text += (each.level == severity::error ? " error " : " warning ") + std::to_string(each.code);
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

std::string replaced(std::string text, const std::string& from, const std::string& to)
{
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
        text.replace(at, from.size(), to);
    }
    return text;
}

// What is said of an <x/> in the root, after its place.
const std::string unknown = " error 2 unknown element <x> [unknown-element] = <maps> contains maps and includes";

// With a byte order mark.
std::string utf16(const std::string& text, bool is_big)
{
    std::string bytes = is_big ? "\xFE\xFF" : "\xFF\xFE";
    for (const char16_t unit : NUVEK_2_18::strings::utf8_to_utf16(text)) {
        const char halves[] = {static_cast<char>(unit & 0xFF), static_cast<char>(unit >> 8)};
        bytes += {halves[is_big ? 1 : 0], halves[is_big ? 0 : 1]};
    }
    return bytes;
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

TEST(Report, CountsLinesAndColumnsInCodePointsOfTheFile)
{
    const std::string text = "<maps>\n<!--\xC3\xA9-->\t<x/>\n</maps>";
    const std::string latin = "<?xml version='1.0' encoding='ISO-8859-1'?>" + replaced(text, "\xC3", "");
    const std::string emoji = replaced(text, "\xC3\xA9", "\xF0\x9F\x98\x80");
    const std::vector<group> rows = {
        {"world.xml:2:10-2:12" + unknown,
         {text, "\xEF\xBB\xBF" + text, emoji, replaced(text, "\n", "\r\n"), replaced(text, "\n", "\r"),
          replaced(latin, "\xA9", "\xE9"), utf16(emoji, false), utf16(emoji, true)}},
    };
    check(rows, [](const std::string& content) { return found(world(content)); });
}

TEST(Report, FollowsMistakesThroughIncludes)
{
    const std::string b = "<include file='b'/>";
    const std::string c = "<include file='c'/>";
    const std::string m = "<map name='m'><item name='k'/></map>";
    const auto file = [](const std::string& content) { return "<maps>" + content + "</maps>"; };
    const std::vector<std::pair<files, std::string>> rows = {
        // found once, however often the file is included
        {{{"a", file(b + c)}, {"b", file(c)}, {"c", file("<x/>")}},
         "c:1:7-1:9" + unknown + " | b:1:7-1:15 include | a:1:7-1:15 include"},
        {{{"a", file(b)}, {"b", file(c)}, {"c", file("<include file='a'/>")}},
         R"(c:1:22-1:23 error 2 "a" includes "b" includes "c" includes "a" [include-cycle] = a file must )"
         "not include itself, not even through others | b:1:7-1:15 include | a:1:7-1:15 include"},
        {{{"a", file(b + c)}, {"b", file(m)}, {"c", file(m)}},
         R"(c:1:18-1:19 error 6 map "m" is declared twice [duplicate-map] | b:1:18-1:19 first declared )"
         "here | a:1:26-1:34 include"},
        // after a fault as well, by the same rules
        {{{"a", file("<x/>" + b + c)}, {"b", file(m)}, {"c", file(m + b)}},
         "a:1:7-1:9" + unknown +
             "\nc:1:18-1:19 error 6 map \"m\" is declared twice [duplicate-map] | b:1:18-1:19 first declared here | "
             "a:1:30-1:38 include\nc:1:58-1:59 error 6 \"b\" is included again; its maps are loaded already "
             "[included-twice] = remove one of the includes | a:1:11-1:19 first included here | a:1:30-1:38 include"},
        {{{"a", file("<include file='d/b'/>")}, {"d/b", file(c)}, {"d/c", file(m)}},
         R"(d/b:1:22-1:23 error 1 "c" does not exist [missing-file] = includes are relative to the folder of the master file: write "d/c" | a:1:7-1:15 include)"},
        {{{"a", file("<include file='d'/>")}, {"d/b", file(m)}},
         R"(a:1:22-1:23 error 1 "d" is not a file [missing-file])"},
#if defined(__linux__)
        {{{"a", file("<include file='New.xml'/>")}, {"new.xml", file(m)}},
         R"(a:1:22-1:29 error 1 "New.xml" does not exist; did you mean "new.xml"? [missing-file] = the )"
         "letter case of file names counts"},
#endif
    };
    for (const auto& [set, expected] : rows) EXPECT_EQ(found(set, report_rows::with_names), expected);
}

TEST(Report, SaysOneMistakeOnce)
{
    const std::vector<std::string> mistaken = {
        "<html><body><p>x</p><p>y</p></body></html>",
        "<maps><Map name='n'><item name='k'/><arg name='v'/></Map></maps>",
        "<maps><map name='m'><item name='a'><item name='b'/><arg name='c'/></map></maps>",
        "<maps><map name='m'><item name='a'/><arg name='1'/><arg name='2'/><arg name='3'/></map></maps>",
        "<maps><vector_map name='m'><arg name='a'/><arg name='b'/></vector_map></maps>",
        "<maps><vector_map name='m'><item name='k'><arg name='a'/><arg name='b'/></item></vector_map></maps>",
        "<maps><collection_map name='m'><item name='k'/><arg name='a'/><arg name='b'/></collection_map></maps>",
        "<maps><vector_map name='m'><row name='k'/><arg name='a'/><arg name='b'/></vector_map></maps>",
        "<maps><map name='m'><item name='k'><x><y/></x><z/></item></map></maps>",
        "<maps>\n<map name='m'><item na"};
    for (const std::string& document : mistaken) {
        const std::string text = found(world(document));
        EXPECT_TRUE(!text.empty() && text.find('\n') == std::string::npos) << document << text;
    }
}

TEST(Report, KeepsToItsLimits)
{
    const std::string mixed = "<maps><map name='m'/>\n<x/>\n<map name='n'/>\n<x/>\n<x/></maps>";
    const std::string warning = "world.xml:1:7-1:11 warning 0 map \"m\" has no content and is not loaded [empty-map]";
    const std::string errors = "world.xml:2:1-2:3" + unknown + "\nworld.xml:4:1-4:3" + unknown;
    const auto limit = [](const std::string& what) {
        return "world.xml error 0 the limit of " + what + " is exceeded [limit-reached] ...";
    };
    const std::string missing = "world.xml:1:22-1:27 error 1 \"b.xml\" does not exist [missing-file]\n";
    const std::string two = "<maps><include file='b.xml'/><include file='c.xml'/></maps>";
    const files three = world(two, {{"b.xml", "<maps/>"}, {"c.xml", "<maps/>"}});
    const std::uint64_t size = two.size() + 14;
    const files neighbours = {{"d/a", "<maps><include file='../d2/b'/></maps>"}, {"d2/b", "<maps/>"}};
    const std::vector<std::tuple<std::string, files, check_options>> rows = {
        {" of 3+2", world(mixed), {0}},
        {errors + " of 3+2", world(mixed), {2}},
        {warning + '\n' + errors + "\nworld.xml:5:1-5:3" + unknown + " of 3+2", world(mixed), {4}},
        {"", three, {10, 3, size}},
        {limit("2 files"), three, {10, 2, size}},
        {limit(std::to_string(size - 1) + " bytes"), three, {10, 3, size - 1}},
        {missing + limit("2 files"), world(two), {10, 2}},
        {limit("0 files"), world(two), {10, 0}},
        {R"(d/a:1:22-1:29 error 1 "../d2/b" is outside the folder that includes must stay in [outside-folder])",
         neighbours,
         {10, 10, 1000, "d"}},
        {"", neighbours, {10, 10, 1000, "."}},
    };
    for (const auto& [expected, set, options] : rows) EXPECT_EQ(found(set, options), expected);
}

TEST(Report, WritesNamesSoThatTheyCanBePrinted)
{
    const auto twice = [](const std::string& name) {
        const std::string item = "<item name='" + name + "'/>";
        const std::string text = found(world("<maps><map name='m'>" + item + "\n" + item + "</map></maps>"));
        return text.substr(0, text.find(" is declared")).substr(text.find(" item ") + 6);
    };
    const std::vector<group> rows = {
        {R"("a\n\r\t\u{7F}b")", {"a&#10;&#13;&#9;&#127;b"}},
        {R"("\u{202E}\u{E0041}\u{FEFF}")", {"\xE2\x80\xAE\xF3\xA0\x81\x81&#xFEFF;"}},
        {'"' + replaced(std::string(80, 'n'), "n", "\xC3\xA9") + "...\"",
         {replaced(std::string(81, 'n'), "n", "\xC3\xA9"), replaced(std::string(100000, 'n'), "n", "\xC3\xA9")}},
        {'"' + std::string(80, 'n') + '"', {std::string(80, 'n')}},
    };
    check(rows, twice);
    // and of the known names only some
    std::string items = "<item name='a'";
    for (int i = 0; i < 20; ++i) items += " x" + std::to_string(i) + "=''";
    EXPECT_EQ(found(world("<maps><collection_map name='m'>" + items +
                          "/>\n<item name='b' other='c'/></collection_map></maps>")),
              R"(world.xml:2:16-2:21 error 3 "other" is not an attribute of this map (name, x0, x1, x2, x3, )"
              "x4, x5, x6, x7, x8, x9, x10, ...) [unknown-attribute] | world.xml:1:32-1:37 the attributes of the map "
              "are named here");
}

TEST(Report, PrintsTheSourceWithAMarkBelowThePlace)
{
    const auto text = [](const files& set, bool is_colored) {
        return report_rows::outcome(set, {}, [&](const auto& master, const check_options& options) {
            return check_maps(master, options).text(is_colored);
        });
    };
    // a tab, a wide character and a combining one, before the place and in it
    const std::string item = "<item name='\xE6\x9C\xACo\xCC\x88'/>";
    const std::string line = "\t<!--\xE6\x9C\xACo\xCC\x88-->" + item + item;
    const files set =
        world("<maps>\n<include file='b.xml'/></maps>", {{"b.xml", "<maps><map name='m'>\n" + line + "</map></maps>"}});
    EXPECT_EQ(text(set, false),
              "b.xml:2:42: error: item \"\xE6\x9C\xACo\xCC\x88\" is declared twice in map \"m\" [duplicate-item]\n  " +
                  line + "</map></maps>\n  \t" + std::string(40, ' ') +
                  "^~~\nb.xml:2:24: note: first declared here\nworld.xml:2:1: note: included here\n");
    // a line that is cut, and printed without what would change the direction of the text
    const std::string pad(90, 'x');
    EXPECT_EQ(text(world("<!--" + pad + "\xE2\x80\xAE" + pad + "--><Maps/>"), false),
              "world.xml:1:189: error: the root element is <Maps>, not <maps> [wrong-root]\n  ...xxxxxx\xEF\xBF\xBD" +
                  pad + "--><Maps/>\n" + std::string(105, ' ') + "^~~~~\n");
    EXPECT_EQ(
        text(world("<maps><map name='m'/><x/></maps>"), true),
        "\x1B[1mworld.xml:1:7:\x1B[m \x1B[1;35mwarning: \x1B[mmap \"m\" has no content and is not loaded [empty-map]\n "
        " <maps><map name='m'/><x/></maps>\n        \x1B[1;32m^~~~\x1B[m\n\x1B[1mworld.xml:1:22:\x1B[m "
        "\x1B[1;31merror: \x1B[munknown element <x> [unknown-element]\n  <maps><map name='m'/><x/></maps>\n            "
        "           \x1B[1;32m^~\x1B[m\n  = <maps> contains maps and includes\n");
}

TEST(Report, TakesTimeInProportionToTheFiles)
{
    const auto repeated = [](std::size_t times, const std::string& text) {
        std::string all;
        while (times-- > 0) all += text;
        return all;
    };
    const auto begin = std::chrono::steady_clock::now();
    const auto errors = [&](const std::string& content) {
        const documents::folder home;
        home.write("a", "<maps>" + content + "</maps>");
        const load_report report = check_maps(home.system_path("a"));
        EXPECT_EQ(report.findings().size(), 1000U);
        return report.errors();
    };
    std::string known;
    std::string wrong;
    for (int i = 0; i < 1000; ++i) known += " known" + std::to_string(i) + "=''";
    for (int i = 0; i < 1000; ++i) wrong += " wrong" + std::to_string(i) + "=''";
    const std::string row = "<item name='a'" + wrong + "/>";
    EXPECT_EQ(
        errors("<collection_map name='m'><item name='b'" + known + "/>" + repeated(100, row) + "</collection_map>"),
        1000U + 99);
    EXPECT_EQ(errors("<map name='m'>" + repeated(500000, "<item name='k'/>") + "</map>"), 499999U);
    EXPECT_EQ(errors("<map name='m'>" + repeated(200000, "<item name='k'>") + repeated(200000, "</item>") + "</map>"),
              199999U * 2);
    EXPECT_EQ(errors(repeated(200000, "<map name='k'>") + repeated(200000, "</map>")), 199999U * 2);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20));
}

TEST(Report, FindsItsPlaceInALargeFileWithoutLineBreaks)
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    constexpr std::size_t size = 1000000;
#else
    constexpr std::size_t size = 100000000;
#endif
    const documents::folder home;
    std::string text = "<maps><!--" + std::string(size, 'x') + "--><x/></maps>";
    home.write("a", text);
    const auto begin = std::chrono::steady_clock::now();
    const load_report report = check_maps(home.system_path("a"));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10));
    ASSERT_EQ(report.findings().size(), 1U);
    const finding& each = report.findings().front();
    EXPECT_EQ(each.where.line, 1U);
    EXPECT_EQ(each.where.column, size + 14);
    EXPECT_EQ(each.source, std::string(97, 'x') + "--><x/></maps>");
    EXPECT_EQ(each.source_column, size + 14 - 100);
}

TEST(LoadMaps, ReplacesAllOrNothing)
{
    struct opened : map_collection
    {
        using map_collection::m_base_dir;
        using map_collection::m_file;
    };
    const documents::folder home;
    home.write("old/a", documents::four_maps("old"));
    home.write("new/a", "<maps><include file='b'/><map name='without content'/></maps>");
    home.write("new/b", documents::four_maps("new"));
    home.write("new/bad", "<maps><include file='b'/><include file='c'/></maps>");
    opened maps;
    opened fresh;
    const auto expect_same = [&](const std::string& prefix) {
        EXPECT_EQ(maps.maps(), fresh.maps());
        EXPECT_EQ(documents::all_answers(maps, prefix), documents::all_answers(fresh, prefix));
        EXPECT_TRUE(maps.m_base_dir == fresh.m_base_dir && maps.m_file == fresh.m_file);
    };
    EXPECT_EQ(load_maps(maps, home.system_path("old/a")).errors(), 0U);
    fresh.load(home.path("old/a"));
    expect_same("old");
    EXPECT_EQ(load_maps(maps, home.system_path("new/bad")).errors(), 1U);
    EXPECT_EQ(load_maps(maps, home.system_path("none")).errors(), 1U);
    expect_same("old");
    EXPECT_EQ(load_maps(maps, home.system_path("new/a")).warnings(), 1U);
    fresh = opened();
    fresh.load(home.path("new/a"));
    expect_same("new");
}

#if defined(__linux__)

TEST(LoadPath, IsThePathThatLoadWants)
{
    const std::vector<std::pair<std::wstring, std::vector<std::string>>> rows = {
        {L".\\a.xml", {"a.xml", "./a.xml"}},
        {L"\\d\\a", {"/d/a"}},
        {L"d\\\xE9\xD83D\xDE00", {"d/\xC3\xA9\xF0\x9F\x98\x80"}},
        // nothing, a backslash in a name, a zero, not UTF-8
        {L"", {"", "a\\b", std::string("a\0b", 3), "\xFF", "\xED\xA0\x80"}},
    };
    for (const auto& [expected, paths] : rows) {
        for (const std::string& path : paths) EXPECT_EQ(load_path(path), expected) << path;
    }
}

TEST(Report, FollowsSymbolicLinksToWhereTheyLead)
{
    const documents::folder home;
    home.write("d/a", "<maps><include file='in'/><include file='out'/></maps>");
    home.write("d/b", "<maps/>");
    home.write("c", "<x/>");
    std::filesystem::create_symlink("b", home.system_path("d/in"));
    std::filesystem::create_symlink("../c", home.system_path("d/out"));
    std::filesystem::create_symlink("d", home.system_path("link"));
    check_options options;
    options.within = home.system_path("link");
    const load_report report = check_maps(home.system_path("d/a"), options);
    ASSERT_EQ(report.findings().size(), 1U);
    EXPECT_EQ(report.findings().front().rule + report.findings().front().message,
              "outside-folder\"out\" is outside the folder that includes must stay in");
}

// On systems that tell letter cases apart, only a name with backslashes: of a file that load opens as the path is written.
TEST(Report, WarnsOfFilesThatOtherSystemsDoNotFind)
{
    const documents::folder home;
    home.write("d/a", "<maps><include file='b'/></maps>");
    home.write("d\\b", "<maps/>");
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(home.system_path(""));
    EXPECT_EQ(rendered(check_maps("d/a")),
              "d/a:1:22-1:23 warning 0 \"b\" has a backslash in a name, which other systems take for a separator "
              "[unportable-path]");
    std::filesystem::current_path(before);
}

#endif
