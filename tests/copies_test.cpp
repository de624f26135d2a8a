// Copies of tables and collections share their items, and nobody can tell.
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "data_mapper/map_collection.h"
#include "documents.h"

using namespace data_mapper4;

namespace {

struct table : vector_map_t
{
    using vector_map_t::begin;
    using vector_map_t::end;
    using vector_map_t::get_args;
    using vector_map_t::m_items;

    // Adds the items of that name, each with the value.
    void add(const std::vector<ustring8>& names, const ustring8& value)
    {
        std::string document = "<maps>";
        for (const auto& name : names) document += "<item name='" + name + "'/><arg name='" + value + "'/>";
        documents::parsed parser(document + "</maps>");
        parser->node_queue_pop();
        load("t", *parser);
    }

    std::string content() const
    {
        std::string text;
        for (const auto& [name, values] : m_items.read()) text += name + '=' + values.at(0) + ' ';
        return text;
    }
};

std::string map_file(const std::string& name, std::size_t items)
{
    std::string text = "<maps><map name='" + name + "'>";
    for (std::size_t i = 0; i < items; ++i) text += "<item name='i" + std::to_string(i) + "'/><arg name='v'/>";
    return text + "</map></maps>";
}

}  // namespace

TEST(Copies, AChangeShowsInTheOther)
{
    table original;
    original.add({"a"}, "1");
    table copy = original;
    EXPECT_EQ(&copy.m_items.read(), &original.m_items.read()) << "the items are copied although nobody changed them";
    copy.add({"b"}, "2");
    EXPECT_EQ(original.content(), "a=1 ");
    EXPECT_EQ(copy.content(), "a=1 b=2 ");
    table second = copy;
    copy.add({"c"}, "3");
    EXPECT_EQ(second.content(), "a=1 b=2 ");
    copy = original;
    original.clear();
    EXPECT_EQ(copy.content(), "a=1 ");
    copy = *&copy;
    EXPECT_EQ(copy.content(), "a=1 ");
    copy.begin()->second.at(0) = "5";
    EXPECT_EQ(copy.content(), "a=5 ");
    EXPECT_EQ(original.content(), "");
}

TEST(Copies, AnIteratorFromBeforeTheCopyReachesIt)
{
    table original;
    original.add({"a"}, "1");
    const auto held = original.begin();
    const table copy = original;
    original = *&original;
    held->second.at(0) = "2";
    EXPECT_EQ(copy.content(), "a=1 ");
    EXPECT_EQ(original.content(), "a=2 ");
    original.add({"b"}, "3");
    EXPECT_EQ(std::distance(held, original.end()), 2) << "the iterator is still one of the table";
}

// Under the thread sanitizer: sharing must not show in a race.
TEST(Copies, TwoThreadsMeetInSharedItems)
{
    for (int round = 0; round < 50; ++round) {
        table original;
        original.add({"a"}, "1");
        std::vector<std::thread> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([i, copy = original]() mutable {
                const table again = copy;
                std::vector<ustring8> values;
                EXPECT_TRUE(again.get_args("a", values));
                if (i % 2 == 0) copy.begin()->second.at(0) = std::to_string(i);
                if (i % 2 == 1) copy.clear();
                EXPECT_EQ(again.content(), "a=1 ");
            });
        }
        original.begin()->second.at(0) = "main";
        for (auto& thread : threads) thread.join();
        EXPECT_EQ(original.content(), "a=main ");
    }
}

TEST(Copies, QueriesRaceWithEachOtherOrWithACopy)
{
    const documents::folder folder;
    folder.write("m.xml", map_file("m", 100));
    folder.write("n.xml", map_file("n", 100));
    map_collection maps;
    maps.load(folder.path("m.xml"));
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&maps, &folder, copy = maps, i]() mutable {
            if (i % 2 == 0) copy.load(folder.path("n.xml"));
            if (i == 3) copy = map_collection();
            ustring8 value;
            for (int item = 0; item < 100; ++item) {
                EXPECT_TRUE(maps.get_arg("m", "i" + std::to_string(item), value));
                EXPECT_TRUE(maps.has_item("m", "i" + std::to_string(item)));
                EXPECT_EQ(copy.has_item("n", "i1"), i % 2 == 0);
            }
            EXPECT_EQ(maps.maps().size(), 1u);
        });
    }
    for (auto& thread : threads) thread.join();
}

// Each of these would copy a map of a hundred thousand items a hundred thousand times.
TEST(Copies, ACopyCostsAsMuchAsItsItems)
{
    const std::size_t many = 100000;
    const documents::folder folder;
    folder.write("m.xml", map_file("m", many));
    map_collection maps;
    ASSERT_EQ(maps.load(folder.path("m.xml")).type(), map_error_t::no_error);
    const auto begin = std::chrono::steady_clock::now();
    for (std::size_t i = 0; i < many; ++i) {
        map_collection copy = maps;
        ASSERT_TRUE(copy.has_item("m", "i7"));
        ASSERT_FALSE(copy.has_key("m", "name"));
    }
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(30));
}
