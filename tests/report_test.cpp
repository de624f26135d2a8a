// What a check says about faulty files.
#include <gtest/gtest.h>

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
    const std::string file = std::filesystem::u8path(place.file).generic_u8string();
    if (place.line == 0) return file;
    return file + ':' + std::to_string(place.line) + ':' + std::to_string(place.column) + '-' +
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
        if (!limited.within && report.is_complete()) {
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

TEST(Report, GoesOnAfterAMistakeAndThroughIncludes)
{
    const std::string b = "<include file='b'/>";
    const std::string c = "<include file='c'/>";
    const std::string m = "<map name='m'><item name='k'/></map>";
    const std::string second =
        " has an <arg> already; in a <map> each item has only one [second-arg] = load stops here; a <vector_map> has "
        "any number of args for an item";
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
             "\nc:1:18-1:19 error 6 map \"m\" is declared twice [duplicate-map] | b:1:18-1:19 first "
             "declared here | a:1:30-1:38 include\nc:1:58-1:59 error 6 \"b\" is included again; its maps are loaded "
             "already [included-twice] = "
             "remove one of the includes | a:1:11-1:19 first included here | a:1:30-1:38 include"},
        {{{"a", file("<x/>\n<map name='m'/>" + m)}},
         "a:1:7-1:9" + unknown + "\na:2:1-2:5 warning 0 map \"m\" has no content and is not loaded [empty-map]"},
        {{{"a", file(b + c)}, {"b", file("<x/>" + c)}, {"c", file(m + m)}},
         "b:1:7-1:9" + unknown +
             " | a:1:7-1:15 include\nc:1:54-1:55 error 6 map \"m\" is declared twice [duplicate-map] | c:1:18-1:19 "
             "first declared here | b:1:11-1:19 include | a:1:7-1:15 include"},
        // twice, but never loaded
        {{{"a", file(b + b)}, {"b", file("<map name='m'><item/></map>")}},
         R"(b:1:21-1:26 error 2 <item> needs the attribute "name" [missing-name] = write <item name="..."/>)"
         " | a:1:7-1:15 include"},
        // the next item is checked as if nothing were wrong
        {{{"a", file("<map name='m'><item name='k'/><arg name='1'/><arg name='2'/><arg/><item name='l'/><arg "
                     "name='1'/><arg name='2'/></map>")}},
         "a:1:52-1:56 error 2 item \"k\"" + second + "\na:1:104-1:108 error 2 item \"l\"" + second},
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
    const auto limit = [](const std::string& place, const std::string& number, const std::string& by) {
        const std::string unit = number.substr(number.find(' ') + 1) + (number.back() == 's' ? "" : "s");
        return "world.xml" + place + " error 0 the limit of " + number + " is exceeded" + by +
               "; nothing further is read [limit-reached] = raise check_options::max_" + unit + ", or --max-" + unit +
               " of the tool ...";
    };
    const std::string missing = "world.xml:1:22-1:27 error 1 \"b.xml\" does not exist [missing-file]\n";
    const std::string two = "<maps><include file='b.xml'/><include file='c.xml'/></maps>";
    const files three = world(two, {{"b.xml", "<maps/>"}, {"c.xml", "<maps/>"}});
    const std::uint64_t size = two.size() + 14;
    const files again = world("<maps><include file='b.xml'/>\n<include file='b.xml'/></maps>", {{"b.xml", "<maps/>"}});
    const files neighbours = {{"d/a", "<maps><include file='../d2/b'/></maps>"}, {"d2/b", "<maps/>"}};
    // Each byte beyond ASCII is two in UTF-8.
    const std::string latin = "<?xml version='1.0' encoding='ISO-8859-1'?><maps><!--" + std::string(800, '\xE9') +
                              "--><include file='b.xml'/></maps>";
    const files wide = world(latin, {{"b.xml", "<maps><!--" + std::string(100000, ' ') + "--></maps>"}});
    const files products = world(
        "<maps><map name='m'><item name='a'/><arg name='b'/></map><collection_map name='c'><item name='a' x='' "
        "y=''/><item name='b'/></collection_map>\n<vector_collection_map name='v'><item name='a'/><arg name='b' "
        "x=''/><arg name='c'/></vector_collection_map></maps>");
    const auto values = [](std::uint64_t most) { return check_options{10, 10, 100000, {}, false, most}; };
    const std::vector<std::tuple<std::string, files, check_options>> rows = {
        {" of 3+2", world(mixed), {0}},
        {errors + " of 3+2", world(mixed), {2}},
        {warning + '\n' + errors + "\nworld.xml:5:1-5:3" + unknown + " of 3+2", world(mixed), {4}},
        {"", three, {10, 3, size}},
        {limit(":1:30-1:38", "2 files", ""), three, {10, 2, size}},
        {limit(":1:30-1:38", std::to_string(size - 1) + " bytes", " by \"c.xml\""), three, {10, 3, size - 1}},
        {limit(":2:1-2:9", std::to_string(again[0].second.size() + 7) + " bytes", " by \"b.xml\""),
         again,
         {10, 10, again[0].second.size() + 7}},
        {limit("", "1 byte", " by \"world.xml\""), three, {10, 10, 1}},
        {limit(":1:857-1:865", std::to_string(latin.size()) + " bytes", " by \"b.xml\""), wide, {10, 10, latin.size()}},
        {missing + limit(":1:30-1:38", "2 files", ""), world(two), {10, 2}},
        {limit("", "0 files", ""), world(two), {10, 0}},
        {"", products, values(2 + 6 + 1 + 4)},
        {limit(":2:1-2:23", "12 values", " by this map"), products, values(2 + 6 + 1 + 3)},
        {limit(":1:58-1:73", "7 values", " by this map"), products, values(2 + 5)},
        {R"(d/a:1:22-1:29 error 1 "../d2/b" is outside the folder that files are restricted to [outside-folder])",
         neighbours,
         {10, 10, 1000, "d"}},
        {R"(world.xml error 1 "world.xml" is outside the folder that files are restricted to [outside-folder])",
         three,
         {10, 10, 1000, "d2"}},
        {"", neighbours, {10, 10, 1000, "."}},
        // even if it leads back in
        {R"(d/a:1:22-1:28 error 1 "../d/b" is outside the folder that files are restricted to [outside-folder])",
         {{"d/a", "<maps><include file='../d/b'/></maps>"}, {"d/b", "<maps/>"}},
         {10, 10, 1000, "d"}},
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
         {replaced(std::string(81, 'n'), "n", "\xC3\xA9"), replaced(std::string(2000, 'n'), "n", "\xC3\xA9")}},
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
    const std::string line = "\t<!--\xE6\x9C\xAC\xE6\x9C\xAC\xE6\x9C\xACo\xCC\x88-->" + item + item;
    const files set =
        world("<maps>\n<include file='b.xml'/></maps>", {{"b.xml", "<maps><map name='m'>\n" + line + "</map></maps>"}});
    EXPECT_EQ(text(set, false),
              "b.xml:2:44: error: item \"\xE6\x9C\xACo\xCC\x88\" is declared twice in map \"m\" [duplicate-item]\n  " +
                  line + "</map></maps>\n  \t" + std::string(44, ' ') +
                  "^~~\nb.xml:2:26: note: first declared here\nworld.xml:2:1: note: included here\n");
    // a line that is cut, and printed without what would change the direction of the text
    const std::string pad(90, 'x');
    EXPECT_EQ(text(world("<!--" + pad + "\xE2\x80\xAE" + pad + "--><Maps/><!--" + pad + "-->"), false),
              "world.xml:1:189: error: the root element is <Maps>, not <maps> [wrong-root]\n  ...xxxxxx\xEF\xBF\xBD" +
                  pad + "--><Maps/><!--" + pad.substr(0, 49) + '\n' + std::string(105, ' ') + "^~~~~\n");
    EXPECT_EQ(
        text(world("<maps><map name='m'/><x/></maps>"), true),
        "\x1B[1mworld.xml:1:7:\x1B[m \x1B[1;35mwarning: \x1B[mmap \"m\" has no content and is not loaded [empty-map]\n "
        " <maps><map name='m'/><x/></maps>\n        \x1B[1;32m^~~~\x1B[m\n\x1B[1mworld.xml:1:22:\x1B[m "
        "\x1B[1;31merror: \x1B[munknown element <x> [unknown-element]\n  <maps><map name='m'/><x/></maps>\n            "
        "           \x1B[1;32m^~\x1B[m\n  = <maps> contains maps and includes\n");
}
