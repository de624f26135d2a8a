// Sets of files that are large or odd, load_maps and load_path.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "data_mapper/load_report.h"
#include "documents.h"

using namespace data_mapper4;

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
        errors("<collection_map name='m'><item name='b'" + known + "/>" + repeated(20, row) + "</collection_map>"),
        1000U + 19);
    EXPECT_EQ(errors("<map name='m'>" + repeated(100000, "<item name='k'/>") + "</map>"), 99999U);
    EXPECT_EQ(errors("<map name='m'>" + repeated(40000, "<item name='k'>") + repeated(40000, "</item>") + "</map>"),
              39999U * 2);
    EXPECT_EQ(errors(repeated(40000, "<map name='k'>") + repeated(40000, "</map>")), 39999U * 2);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(30));
}

// When its cost grew with the square of its size, each of these files alone took longer than all may take together.
TEST(Report, TakesNoLongerForOddPathsAndItems)
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || defined(_GLIBCXX_ASSERTIONS)
    constexpr int size = 1;  // too slow there
#else
    constexpr int size = 20;
#endif
    const documents::folder home;
    std::string long_path;
    for (int i = 0; i < 1900; ++i) long_path += "a/";
    std::string missing = "<maps>";
    for (int i = 0; i < 25 * size; ++i) missing += "<include file='" + long_path + std::to_string(i) + "'/>";
    std::string unlike = "<maps>";
    for (int i = 0; i < 50 * size; ++i) {
        home.write("b/" + std::string(30, 'x') + std::to_string(i * 7919), "");
        unlike += "<include file='b/" + std::string(30, 'x') + std::to_string(i * 7907 + 1000000) + "'/>";
    }
    std::string wide = "<maps><collection_map name='m'><item name='a'";
    for (int i = 0; i < 75000 * size; ++i) wide += " a" + std::to_string(i) + "=''";
    wide += "/>";
    for (int i = 0; i < 1500 * size; ++i) wide += "<item name='a'/>";
    home.write("missing", missing + "</maps>");
    home.write("unlike", unlike + "</maps>");
    home.write("wide", wide + "</collection_map></maps>");
    home.write("a/a/a", "");
    check_options options;
    options.within = home.system_path("");
    options.suggest_files = true;
    options.max_values = std::uint64_t{1} << 60;
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(check_maps(home.system_path("missing"), options).errors(), 25U * size);
    EXPECT_EQ(check_maps(home.system_path("unlike"), options).errors(), 50U * size);
    EXPECT_EQ(check_maps(home.system_path("wide"), options).errors(), 1500U * size);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20));
}

TEST(Report, ShowsTheEndsOfAVeryLongPath)
{
    const documents::folder home;
    std::string path;
    for (int i = 0; i < 300; ++i) path += "./";
    home.write("a", "<maps><include file='" + path + "\xC3\xA9/b'/></maps>");
    home.write("\xC3\xA9/b", "<maps><map name='m'><item name='k'/></map><x/></maps>");
    const load_report report = check_maps(home.system_path("a"));
    ASSERT_TRUE(report.findings().size() == 1 && report.maps().size() == 1);
    const std::string shown = std::filesystem::u8path(report.findings().front().where.file).generic_u8string();
    EXPECT_EQ(shown.size(), 511U);
    EXPECT_EQ(shown.substr(shown.size() - 5), "/\xC3\xA9/b");
    EXPECT_NE(shown.find("..."), std::string::npos);
    EXPECT_EQ(std::filesystem::u8path(report.maps().front().declared.file).generic_u8string(), shown);
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

TEST(Report, WarnsOfFilesThatOtherSystemsDoNotFind)
{
    const documents::folder home;
    home.write("d/a", "<maps><include file='e\\b'/></maps>");
    home.write("d/e/b", "<maps/>");
    const load_report report = check_maps(home.system_path("d/a"));
    ASSERT_TRUE(report.warnings() == 1 && report.errors() == 0);
    EXPECT_EQ(report.findings().front().rule, "unportable-path");
#if defined(_WIN32)
    home.write("d/a", "<maps><include file='E/B'/></maps>");
    const load_report other = check_maps(home.system_path("d/a"), {1000, 10000, 1 << 30, {}, true});
    ASSERT_EQ(other.warnings(), 1U);
    EXPECT_EQ(other.findings().front().message,
              "the file is called \"b\"; other systems tell upper and lower case apart");
#endif
}

TEST(LoadPath, IsThePathThatLoadWants)
{
    const std::vector<std::pair<std::wstring, std::vector<std::string>>> rows = {
        {L".\\a.xml", {"a.xml", "./a.xml"}},
        {L"\\d\\a", {"/d/a"}},
        {L"d\\\xE9\xD83D\xDE00", {"d/\xC3\xA9\xF0\x9F\x98\x80"}},
#if defined(_WIN32)
        {L"C:.\\a.xml", {"C:a.xml"}},
        {L"C:\\a.xml", {"C:/a.xml", "C:\\a.xml"}},
        {L"\\\\?\\C:\\d\\a.xml", {"\\\\?\\C:\\d/a.xml"}},
        {L"", {"", std::string("a\0b", 3)}},
#else
        // nothing, a backslash in a name, a zero, not UTF-8
        {L"", {"", "a\\b", std::string("a\0b", 3), "\xFF", "\xED\xA0\x80"}},
#endif
    };
    for (const auto& [expected, paths] : rows) {
        for (const std::string& path : paths) EXPECT_EQ(load_path(std::filesystem::u8path(path)), expected) << path;
    }
}

#if defined(_WIN32)

// The check loads as many maps, and has an error if a load is refused.
TEST(LoadMaps, TakesPathsOfEveryFormButNoDevices)
{
    const documents::folder home;
    home.write("a", "<maps><include file='d/b'/></maps>");
    home.write("d/b", documents::four_maps("m"));
    const std::wstring folder = home.path("");
    const auto outcome = [](const std::wstring& path) {
        map_collection maps;
        check_options options;
        options.within = std::filesystem::current_path();
        const load_report report = check_maps(path, options);
        const bool is_refused = maps.load(path).type() == map_error_t::file_not_found;
        EXPECT_TRUE(report.maps().size() == maps.maps().size() && (report.errors() == 1) == is_refused);
        return is_refused ? "refused" : std::to_string(maps.maps().size());
    };
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(folder);
    const std::wstring drive = folder.substr(0, 2);
    for (const std::wstring& prefix : {folder, L"\\\\?\\" + folder, drive + L".\\", folder.substr(2)}) {
        EXPECT_EQ(outcome(prefix + L"a"), "4") << std::filesystem::path(prefix);
    }
    for (const std::wstring prefix : {L"", L".\\", L"\\\\.\\", L"\\\\?\\"}) {
        for (const std::wstring name : {L"NUL", L"nul.xml", L"CON", L"CONIN$", L"COM1", L"a:b", L"a\\b", L"d"}) {
            EXPECT_EQ(outcome(prefix + name), "refused") << std::filesystem::path(prefix + name);
        }
    }
    std::filesystem::current_path(before);
}

#endif

#if defined(__linux__)

// Each path is an include, and the path of the master file.
TEST(Report, OpensNothingOutsideItsFolder)
{
    namespace fs = std::filesystem;
    const documents::folder home;
    const std::string secret = "<maps><secret/></maps>";
    home.write("maps/in", "<maps/>");
    home.write("maps/sub/in", "<maps/>");
    home.write("secret/x", secret);
    home.write("maps2/x", secret);
    const std::vector<std::pair<std::string, fs::path>> links = {
        {"to_in", "in"},
        {"to_sub", "sub"},
        {"sub/up", "../in"},
        {"there", "sub/../in"},
        {"whole", home.system_path("maps/in")},
        {"real", "sub/./up"},
        {"evil", "../secret/x"},
        {"folder", "../secret"},
        {"out", ".."},
        {"root", "/"},
        {"absolute", home.system_path("secret/x")},
        {"proc", "/proc/self/environ"},
        {"nowhere", "../nosuch"},
        {"back", "../maps/in"},
        {"twice", "evil"},
        {"loop", "loop"},
        {"dangling", "nosuch"},
        {"prefix", home.system_path("maps2/x")},
        {"dots", home.system_path("maps/sub/../../secret/x")},
    };
    for (const auto& [name, target] : links) fs::create_symlink(target, home.system_path("maps/" + name));
    // More links than the system follows.
    for (int i = 0; i < 41; ++i) {
        fs::create_symlink(i == 0 ? "in" : 'l' + std::to_string(i), home.system_path("maps/l" + std::to_string(i + 1)));
    }
    fs::create_symlink("maps", home.system_path("link"));
    const std::string depth = home.system_path("maps").relative_path().u8string();
    const std::vector<documents::group> rows = {
        {"", {"in", "./in", ".//sub/../in", "sub/in", "to_in", "to_sub/in", "sub/up", "there", "whole", "real", "l40"}},
        {"outside-folder",
         {"../secret/x",
          "../maps/in",
          "sub/../../maps/in",
          "../nosuch/../maps/in",
          "../home/../maps/in",
          "sub/../..",
          "../nosuch",
          "../maps2/x",
          "evil",
          "folder/x",
          "folder/nosuch",
          "out/secret/x",
          "out/maps/in",
          "root/etc/passwd",
          "root/" + depth + "/in",
          "absolute",
          "proc",
          "nowhere",
          "back",
          "twice",
          "prefix",
          "dots",
          "to_sub/../../secret/x",
          std::string(4000, '.') + "/../../secret/x"}},
        {"missing-file",
         {"nosuch", "nosuch/../in", "loop", "dangling", "in/", "in/.", "sub", "to_sub", "sub/", "IN", "l41",
          std::string(5000, 'x')}},
    };
    const auto rule_of = [](const load_report& report) {
        EXPECT_TRUE(report.maps().empty() && report.text().find("secret/>") == std::string::npos);
        return report.findings().empty() ? "" : report.findings().front().rule;
    };
    check_options options;
    options.suggest_files = true;
    const fs::path before = fs::current_path();
    for (const std::string folder : {"maps", "link", "maps/sub/..", "./maps/"}) {
        fs::current_path(home.system_path(""));
        options.within = folder;
        documents::check(rows, [&](const std::string& path) {
            home.write("maps/master", "<maps><include file='" + path + "'/></maps>");
            const std::string as_include = rule_of(check_maps("maps/master", options));
            EXPECT_EQ(rule_of(check_maps(fs::absolute("maps/master"), options)), as_include) << path;
            EXPECT_EQ(rule_of(check_maps("maps/" + path, options)), as_include) << path;
            return as_include;
        });
    }
    // An empty path is the current folder, and a folder that does not exist contains nothing.
    options.within = "";
    fs::current_path(home.system_path("maps"));
    EXPECT_EQ(rule_of(check_maps("in", options)) + rule_of(check_maps("sub/in", options)), "");
    EXPECT_EQ(rule_of(check_maps("../secret/x", options)), "outside-folder");
    options.within = "nosuch";
    EXPECT_EQ(rule_of(check_maps("in", options)), "outside-folder");
    fs::current_path(before);
}

TEST(Report, StaysInItsFolderWhileThatChanges)
{
    namespace fs = std::filesystem;
    const documents::folder home;
    home.write("maps/m", "<maps><include file='d/x'/><include file='d/e/../x'/></maps>");
    home.write("maps/d/x", "<maps/>");
    home.write("maps/d/e/x", "<maps/>");
    home.write("secret/x", "<maps><secret/></maps>");
    home.write("secret/e/x", "");
    fs::create_symlink("../secret", home.system_path("maps/l"));
    std::atomic<bool> is_over = false;
    std::thread changer([&] {
        const auto move = [&](const char* from, const char* to) {
            fs::rename(home.system_path(from), home.system_path(to));
        };
        while (!is_over) {
            move("maps/d", "maps/o");
            move("maps/l", "maps/d");
            move("maps/d", "maps/l");
            move("maps/o/e", "secret/f");  // the parent of the open folder is now outside
            move("secret/f", "maps/o/e");
            move("maps/o", "maps/d");
        }
    });
    check_options options;
    options.within = home.system_path("maps");
    std::size_t outside = 0;
    for (int i = 0; i < 3000; ++i) {
        const load_report report = check_maps(home.system_path("maps/m"), options);
        for (const finding& each : report.findings()) {
            EXPECT_TRUE(each.rule == "missing-file" || each.rule == "outside-folder") << each.message;
            outside += each.rule == "outside-folder" ? 1U : 0U;
        }
    }
    is_over = true;
    changer.join();
    EXPECT_NE(outside, 0U);
}

TEST(Report, ReadsNothingOfAFileThatIsTooLarge)
{
    const documents::folder home;
    home.write("a", "<maps><include file='b'/></maps>");
    home.write("b", "<maps/>");
    std::filesystem::resize_file(home.system_path("b"), std::uintmax_t{100} << 30);
    const auto begin = std::chrono::steady_clock::now();
    const load_report report = check_maps(home.system_path("a"));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(1));
    ASSERT_EQ(report.findings().size(), 1U);
    EXPECT_EQ(report.findings().front().rule, "limit-reached");
}

#endif
