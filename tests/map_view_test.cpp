// Views answer like the queries that copy, without allocating.
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <thread>

#include "documents.h"

using namespace data_mapper4;

namespace {

// One map of each kind, whose items are not in the order of their names, and an empty map.
const std::string all_kinds =
    "<maps><map name='m'><item name='b'/><arg name='x'/><item name='a'/></map>"
    "<vector_map name='v'><item name='b'/><arg name='x'/><arg name='y &amp; z'/><item name='a'/></vector_map>"
    "<collection_map name='c'><item name='b' p='1' q='' r='3'/><item name='a' r='4'/></collection_map>"
    "<vector_collection_map name='w'><item name='b'/><arg name='x' p='1'/><arg name='y'/><item name='a'/>"
    "</vector_collection_map><map name='e'><include file='none'/></map></maps>";

template <class range>
std::string rendered(const range& values);
std::string rendered(const item_view& item);

std::string rendered(std::string_view text)
{
    return std::string(text);
}

template <class first, class second>
std::string rendered(const std::pair<first, second>& pair)
{
    return rendered(pair.first) + '=' + rendered(pair.second);
}

std::string rendered(const item_view& item)
{
    return rendered(item.text()) + rendered(item.texts()) + rendered(item.attributes()) + rendered(item.rows());
}

template <class range>
std::string rendered(const range& values)
{
    const auto add = [](const std::string& text, const auto& each) {
        return text + (text.empty() ? "" : ",") + rendered(each);
    };
    const std::string all = std::accumulate(values.begin(), values.end(), std::string(), add);
    EXPECT_EQ(values.empty(), all.empty() && values.begin() == values.end());
    return '(' + all + ')';
}

map_collection load(const std::string& document)
{
    const documents::folder folder;
    folder.write("m", document);
    map_collection maps;
    maps.load(folder.path("m"));
    return maps;
}

}  // namespace

TEST(MapView, ShowsAllKindsInTheOrderOfTheDocument)
{
    const map_collection maps = load(all_kinds);
    const std::pair<const char*, const char*> rows[] = {
        {"m", "0 2 () (b=x()()(),a=()()())"},
        {"v", "2 2 () (b=(x,y & z)()(),a=()()())"},
        {"c", "1 2 (name,p,q,r) (b=()(name=b,p=1,q=,r=3)(),a=()(name=a,p=,q=,r=4)())"},
        {"w", "3 2 (name,p) (b=()()((name=x,p=1),(name=y,p=)),a=()()())"},
        {"e", "0 0 () ()"},
        {"none", "4 0 () ()"},
    };
    std::string names;
    for (const auto& [name, view] : maps.views()) names += rendered(name) + (view ? "+" : "-");
    EXPECT_EQ(names, "c+e+m+v+w+");
    for (const auto& [name, expected] : rows) {
        const map_view view = maps.view(name);
        EXPECT_EQ(static_cast<bool>(view), view.kind() != MT_UNKNOWN);
        EXPECT_EQ(std::to_string(view.kind()) + ' ' + std::to_string(view.size()) + ' ' + rendered(view.keys()) + ' ' +
                      rendered(view),
                  expected);
    }
}

TEST(MapView, FindsWhatItsKindOfMapHas)
{
    const map_collection maps = load(all_kinds);
    for (const std::string map : {"m", "v", "c", "w", "none"}) {
        const map_view view = maps.view(map);
        for (const std::string item : {"a", "b", "c", ""}) {
            const bool has = view && (item == "a" || item == "b");
            EXPECT_EQ(view.contains(item), has);
            EXPECT_EQ(view.find(item).has_value(), has);
            EXPECT_EQ(view.text(item).has_value(), has && map == "m");
            EXPECT_EQ(!view.texts(item).empty(), has && map == "v" && item == "b");
            EXPECT_EQ(!view.attributes(item).empty(), has && map == "c");
            EXPECT_EQ(view.attribute(item, "r").has_value(), has && map == "c");
            EXPECT_EQ(!view.rows(item).empty(), has && map == "w" && item == "b");
            EXPECT_EQ(has ? view.find(item)->name() : item, item);
        }
    }
    EXPECT_EQ(maps.view("m").text("b"), "x");
    EXPECT_EQ(maps.view("m").text("a"), "");
    EXPECT_EQ(maps.view("c").attribute("a", "r"), "4");
    EXPECT_EQ(maps.view("c").attribute("a", "name"), "a");
    EXPECT_EQ(maps.view("c").attribute("a", "q"), "");
    EXPECT_EQ(maps.view("c").attribute("a", "s"), std::nullopt);
    const row_list found = maps.view("w").rows("b");
    EXPECT_EQ((*std::next(found.begin())).value("name"), "y");
    const auto view = maps.view("v");
    EXPECT_EQ(std::count_if(view.begin(), view.end(), [](const auto& item) { return item.second.texts().empty(); }), 1);
}

// A derived class can get at a table's iterators, which may change its items at any time.
TEST(MapView, IsNotGivenForATableWithIterators)
{
    struct open_collection : map_collection
    {
        using map_collection::m_vector_maps;
    };
    struct open_table : vector_map_t
    {
        using vector_map_t::begin;
    };
    open_collection maps;
    static_cast<map_collection&>(maps) = load(all_kinds);
    (maps.m_vector_maps.at("v").*&open_table::begin)()->second.push_back("new");
    EXPECT_FALSE(maps.view("v"));
    EXPECT_TRUE(maps.view("m"));
    std::vector<ustring8> texts;
    EXPECT_TRUE(maps.get_args("v", "a", texts) && texts == std::vector<ustring8>{"new"});
    const open_collection copy = maps;
    EXPECT_EQ(rendered(copy.view("v").texts("a")), "(new)");
}

// Under the thread sanitizer.
TEST(MapView, IsReadInManyThreads)
{
    const map_collection maps = load(all_kinds);
    const map_view view = maps.view("v");
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int again = 0; again < 100; ++again) {
                EXPECT_EQ(rendered(view), "(b=(x,y & z)()(),a=()()())");
                const map_collection copy = maps;
                EXPECT_EQ(copy.view("m").text("b"), maps.view("m").text("b"));
            }
        });
    }
    for (auto& thread : threads) thread.join();
}
