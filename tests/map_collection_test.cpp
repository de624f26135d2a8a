// Loading master files with their includes, and the queries.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>

#include "data_mapper/map_collection.h"
#include "documents.h"

using namespace data_mapper4;
using documents::check;
using documents::group;

namespace {

struct opened : map_collection
{
    using map_collection::collection_map;
    using map_collection::m_base_dir;
    using map_collection::m_error;
    using map_collection::m_file;
    using map_collection::simple_map;
    using map_collection::vector_collection_map;
    using map_collection::vector_map;
};

// Code and line | the maps with their types | the last file that a load began with.
std::string rendered(opened& maps, map_error_t error, const documents::folder& folder)
{
    std::string text = maps.map_error_as_string(error) + ' ' + std::to_string(error.line()) + " |";
    for (const auto& [name, type] : maps) text += ' ' + name + ':' + std::to_string(type);
    const std::wstring base = folder.path("");
    const std::wstring file = maps.m_file.substr(maps.m_file.rfind(base, 0) == 0 ? base.size() : 0);
    return text + " | " + std::string(file.begin(), file.end());
}

// Loads the first of several files. Each is a zero byte, a name and, from the first "<" on, the content.
std::string load(const std::string& files)
{
    const documents::folder folder;
    std::string first;
    for (std::size_t at = 0, end = 0; at < files.size(); at = end) {
        end = std::min(files.find('\0', at + 1), files.size());
        const std::string name = files.substr(at + 1, files.find('<', at) - at - 1);
        folder.write(name, files.substr(at + 1 + name.size(), end - at - 1 - name.size()));
        if (first.empty()) first = name;
    }
    opened maps;
    const map_error_t error = maps.load(folder.path(first));
    EXPECT_EQ(maps.m_base_dir, folder.path(""));
    return rendered(maps, error, folder);
}

// A small map of each kind, on one line.
const std::string m = "<map name='m'><item name='k'/><arg name='v'/></map>";
const std::string c = "<collection_map name='c'><item name='k' x='1'/><item name='l'/></collection_map>";
const std::string v = "<vector_map name='v'><item name='k'/><arg name='1'/><arg name='2'/></vector_map>";
const std::string vc =
    "<vector_collection_map name='vc'><item name='k'/><arg name='s' x='1'/><arg name='t'/><item name='l'/>"
    "</vector_collection_map>";

const auto file_of = [](const std::string& content) { return "<maps>" + content + "</maps>"; };
const auto file = [](const std::string& name, const std::string& content) { return '\0' + name + file_of(content); };
const auto include = [](const std::string& path) { return "<include file='" + path + "'/>"; };

// Relative to the current directory.
map_error_t load_in(const documents::folder& folder, map_collection& maps, const std::wstring& path)
{
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(folder.system_path(""));
    const map_error_t error = maps.load(path);
    std::filesystem::current_path(before);
    return error;
}

}  // namespace

TEST(MapCollection, JudgesAMasterFile)
{
    const std::vector<group> roots = {
        {"no_error 0 | | a", {"<maps></maps>", "<maps/>", "<maps>", "<maps>\n<map name='n'/></maps>"}},
        {"invalid_format 0 | | a", {"<maps a='1'/>", "<!---->", "<map/>", "<Maps></Maps>", "<maps>" + m + "</map>"}},
        {"no_error 5 | c:1 m:0 v:2 vc:3 | a", {"<maps>\n" + m + "\n" + c + "\n" + v + "\n" + vc + "</maps>"}},
    };
    check(roots, [](const std::string& document) { return load('\0' + ("a" + document)); });
    // A root with one map on line 2, and what may follow that.
    const std::vector<group> rows = {
        {"no_error 2 | m:0 | a",
         {"", "</maps>", "<maps/>" + c + "</maps>", "<map name='n'/></maps>",
          "<map/><collection_map/><vector_map> </vector_map><vector_collection_map/></maps>"}},
        {"no_error 0 | m:0 n:0 | a", {"<map name='n'>"}},
        // one faulty element: the line is that of the last load
        {"invalid_format 2 | m:0 | a",
         {"<maps a='1'/></maps>", "<maps a='1'><x/></maps></maps>", "<maps></maps>",
          "<map name='n' b='1'><x/></map></maps>", "<map nam='n'><x/></map></maps>", "<map name=''><x/></map></maps>",
          "<Map name='n'><x/></Map></maps>", "<map><map/></map></maps>", "<include/></maps>",
          "<include name='x'/></maps>", "<x/></maps>", "<x name='n'/></maps>"}},
        {"duplicate_map 2 | m:0 | a", {"<x name='m'/></maps>", "<vector_map name='m'/></maps>"}},
        {"invalid_format 0 | m:0 | x", {"<include file='x'><x/></include></maps>"}},
        // a faulty map is not loaded, and its line is reported
        {"duplicate_item 5 | m:0 | a", {"<map name='n'>\n<item name='a'/>\n<item name='a'/></map></maps>"}},
        {"invalid_format 3 | m:0 n:0 | a",
         {"<map name='n'><item name='a'/><arg name='x'/><arg name='y'/></map></maps>"}},
    };
    check(rows, [](const std::string& rest) { return load('\0' + ("a<maps>\n" + m + "\n" + rest)); });
}

TEST(MapCollection, FollowsIncludes)
{
    const std::string sizes = "\n<map name='sizes'>\n<item name='s'/><arg name='small'/></map>";
    const std::string open = std::string(1, '\0') + "a<maps>";
    const std::vector<group> rows = {
        {"no_error 3 | sizes:0 v:2 | b", {file("a", include("b") + sizes) + file("b", v)}},
        {"no_error 1 | sizes:0 v:2 | b", {file("a", sizes + include("b")) + file("b", v)}},
        // the result of an include shows only if nothing after it sets the result
        {"no_error 1 | m:0 | b", {file("a", include("b") + m)}},
        {"no_error 0 | m:0 | b", {file("a", m + include("b"))}},
        {"file_not_found 0 | | b", {open + include("b")}},
        {"no_error 0 | | b", {open + include("b") + include("b") + file("b", "")}},
        {"invalid_format 1 | m:0 | b", {file("a", include("b") + "<x/>") + file("b", m + "<x/>" + c)}},
        {"no_error 0 | | ", {file("a", include(""))}},
        // always relative to the first file's directory, with either separator
        {"no_error 1 | m:0 | c", {file("a", include("d\\b")) + file("d/b", include("c")) + file("c", m)}},
        {"no_error 1 | m:0 | d/c", {file("a", include("d/b")) + file("d/b", include("d/c")) + file("d/c", m)}},
        // a known name ends an included file only
        {"no_error 1 | c:1 m:0 v:2 | b", {file("a", m + include("b") + v) + file("b", c + m + vc)}},
        // files that include themselves, or one another
        {"no_error 0 | | a", {file("a", include("a")), file("a", include("b")) + file("b", include("a"))}},
        {"invalid_format 0 | | a", {open + include("a"), file("a", include("a") + "<x/>")}},
        {"no_error 1 | m:0 v:2 | a", {file("a", include("b") + m) + file("b", include("a") + v)}},
        {"no_error 0 | m:0 | b", {file("a", include("b") + include("b")) + file("b", m)}},
        // once something is loaded the same file is entered again, and goes as far as its first known name
        {"no_error 1 | m:0 v:2 | a", {file("a", m + include("a") + v)}},
        {"no_error 1 | m:0 v:2 | c",
         {file("a", include("b") + include("c")) + file("b", m) + file("c", include("a") + v)}},
    };
    check(rows, load);
}

TEST(MapCollection, TakesTheBaseDirectoryFromTheFirstPathWithABackslash)
{
    const documents::folder folder;
    folder.write("a.xml", file_of(include("b.xml") + include("d\\c.xml") + include("c.xml")));
    folder.write("b.xml", file_of(m));
    folder.write("d/c.xml", file_of(v));
    folder.write("d/b.xml", file_of(vc));
    opened maps;
    const std::wstring after_zero(40000, L'x');
    const map_error_t error = load_in(folder, maps, L"a.xml" + std::wstring(1, L'\0') + after_zero);
    EXPECT_EQ(rendered(maps, error, folder), "no_error 0 | m:0 v:2 | d\\c.xml");
    EXPECT_EQ(maps.m_base_dir, L"d\\");
}

TEST(MapCollection, PassesOverIncludesThatAreTooLongForAPath)
{
    const documents::folder folder;
    const std::string name(40000, 'x');
    folder.write("a", file_of(include(name) + m));
    folder.write("b", "<maps>" + include(name));
    opened maps;
    EXPECT_EQ(maps.load(folder.path("b")).type(), map_error_t::file_not_found);
    EXPECT_EQ(maps.load(folder.path("a")).type(), map_error_t::no_error);
    EXPECT_TRUE(maps.m_file == folder.path(name).substr(0, 32767) && maps.is_loaded("m"));

    // Includes that are joined with a huge base directory would take hours.
    std::string hostile = include(std::string(200000, 'd') + '\\');
    while (hostile.size() < 400000) hostile += include("a");
    folder.write("hostile", file_of(hostile + c));
    const auto begin = std::chrono::steady_clock::now();
    maps = opened();
    EXPECT_EQ(load_in(folder, maps, L"hostile").type(), map_error_t::no_error);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10));
    EXPECT_TRUE(maps.is_loaded("c") && maps.m_base_dir.size() == 200001);
}

TEST(MapCollection, AddsTheMapsOfASecondLoadButNotToCopies)
{
    const documents::folder folder;
    folder.write("1/a", file_of(m));
    folder.write("1/b", file_of(c));
    folder.write("2/a", file_of(include("b") + v + m + vc));
    opened maps;
    maps.load(folder.path("1/a"));
    opened copy = maps;
    EXPECT_EQ(rendered(copy, copy.load(folder.path("2/a")), folder), "duplicate_map 1 | c:1 m:0 v:2 | 1\\b");
    EXPECT_EQ(rendered(copy, copy.load(folder.path("none")), folder), "file_not_found 0 | c:1 m:0 v:2 | none");
    maps = *&maps;
    EXPECT_EQ(rendered(maps, maps.load(maps.m_file), folder), "duplicate_map 0 | m:0 | 1\\a") << "a member as the path";
    maps = opened();
    EXPECT_EQ(rendered(maps, maps.m_error, folder), "no_error 0 | | ");
    EXPECT_EQ(rendered(maps, maps.load(folder.path("2/a")), folder), "no_error 1 | m:0 v:2 vc:3 | 2\\b");
    EXPECT_TRUE(copy.has_item("m", "k") && copy.m_base_dir == folder.path("1/"));
}

TEST(MapCollection, AnswersForTheKindOfTheMap)
{
    const documents::folder folder;
    folder.write(
        "a.xml",
        file_of("<map name='m'><item name='z'/><item name='k'/><arg name='v'/><item name='Z'/></map>" + c + v + vc +
                "<map name='e'>\n</map><vector_collection_map name='f'><item name='k'/>"
                "</vector_collection_map>"));
    opened maps;
    ASSERT_EQ(maps.load(folder.path("a.xml")).type(), map_error_t::no_error);
    const auto answers = [&](const std::string& names) {
        return documents::answers(maps, names.substr(0, names.find(' ')), names.substr(names.find(' ') + 1));
    };
    const std::string nothing = " -? -(?) -(?=?) -? -(())";
    const std::vector<group> rows = {
        {"MT_SIMPLE (Z,k,z)() i- +v -(?) -(?=?) -? -(())", {"m k"}},
        {"MT_SIMPLE (Z,k,z)() i- + -(?) -(?=?) -? -(())", {"m z"}},
        {"MT_SIMPLE (Z,k,z)() --" + nothing, {"m none", "m "}},
        {"MT_VECTOR (k)() i- -? +(1,2) -(?=?) -? -(())", {"v k"}},
        {"MT_VECTOR (k)() -- -? -() -(?=?) -? -(())", {"v none"}},
        {"MT_COLLECTION (k,l)(name,x) in -? -(?) +(name=k,x=1) +1 -(())", {"c k"}},
        {"MT_COLLECTION (k,l)(name,x) in -? -(?) +(name=l,x=) + -(())", {"c l"}},
        {"MT_COLLECTION (k,l)(name,x) -n -? -(?) -() -? -(())", {"c none"}},
        {"MT_VECTOR_COLLECTION (k,l)(name,x) in -? -(?) -(?=?) -? +((name=s,x=1),(name=t,x=))", {"vc k"}},
        {"MT_VECTOR_COLLECTION (k,l)(name,x) in -? -(?) -(?=?) -? +()", {"vc l"}},
        {"MT_VECTOR_COLLECTION (k,l)(name,x) -n -? -(?) -(?=?) -? -()", {"vc none"}},
        {"MT_VECTOR_COLLECTION (k)() i- -? -(?) -(?=?) -? +()", {"f k"}},
        {"MT_UNKNOWN no ()() --" + nothing, {"M k", "e k", " k"}},
    };
    check(rows, answers);
    EXPECT_FALSE(maps.has_key("c", "k"));
    ustring8 text = "x";
    EXPECT_TRUE(maps.get_attrib("c", "l", text, text)) << "the output may be one of the names";
    EXPECT_TRUE(!maps.get_attrib("c", "k", "y", text = "before") && text == "before");
    std::vector<ustring8> list = {"k"};
    EXPECT_TRUE(maps.get_args("v", list[0], list) && list.size() == 2);
    const auto registry = maps.maps();
    EXPECT_TRUE(std::equal(registry.begin(), registry.end(), maps.begin(), maps.end()));
    EXPECT_TRUE(map_t(maps.simple_map("m")).id() == "m" && vector_map_t(maps.vector_map("v")).id() == "v");
    EXPECT_TRUE(collection_map_t(maps.collection_map("c")).id() == "c");
    EXPECT_TRUE(vector_collection_map_t(maps.vector_collection_map("vc")).id() == "vc");
}

TEST(MapCollection, FindsNoTableThatAHostHasRemovedFromTheRegistry)
{
    struct hiding : map_collection
    {
        using map_collection::m_maps;
    };
    const documents::folder folder;
    folder.write("m", documents::four_maps("m"));
    hiding maps;
    ASSERT_EQ(maps.load(folder.path("m")).type(), map_error_t::no_error);
    const ustring8 item = documents::long_name + 'a';
    const std::string before = documents::answers(maps, "mvector_map", item);
    maps.m_maps.erase("mmap");
    EXPECT_EQ(documents::answers(maps, "mmap", item), "MT_UNKNOWN no ()() -- -? -(?) -(?=?) -? -(())");
    EXPECT_EQ(documents::answers(maps, "mvector_map", item), before);
}
