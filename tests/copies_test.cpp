// Copies of tables and collections share their items, and nobody can tell.
#include <gtest/gtest.h>

#include <thread>

#include "data_mapper/map_collection.h"
#include "documents.h"

using namespace data_mapper4;

namespace {

struct table : vector_map_t
{
    using vector_map_t::begin;
    using vector_map_t::end;
    using vector_map_t::m_items;

    // Adds the items of that name, each with the value.
    void add(const std::vector<ustring8>& names, const ustring8& value)
    {
        std::string document = "<maps>";
        for (const auto& name : names) document += "<item name='" + name + "'/><arg name='" + value + "'/>";
        const auto parser = documents::parsed(document + "</maps>");
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

}  // namespace

TEST(Copies, AChangeShowsInTheOther)
{
    table original;
    original.add({"a"}, "1");
    table copy = original;
    EXPECT_EQ(&copy.m_items.read(), &original.m_items.read()) << "the items are copied although nobody changed them";
    copy.add({"b"}, "2");
    const table second = copy;
    copy.add({"c"}, "3");
    EXPECT_EQ(original.content() + "| " + second.content() + "| " + copy.content(), "a=1 | a=1 b=2 | a=1 b=2 c=3 ");
    copy = original;
    original.clear();
    copy = *&copy;
    EXPECT_EQ(original.content() + "| " + copy.content(), "| a=1 ");
}

TEST(Copies, AnIteratorFromBeforeTheCopyReachesIt)
{
    table original;
    original.add({"a"}, "1");
    const auto held = original.begin();
    const table copy = original;
    original = *&original;
    held->second.at(0) = "2";
    EXPECT_EQ(copy.content() + original.content(), "a=1 a=2 ");
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

// Under the thread sanitizer: readers with every query, while others copy the same collection, load into the copies,
// assign and destroy them.
TEST(Copies, QueriesRaceWithEachOtherOrWithACopy)
{
    const documents::folder folder;
    for (const std::string name : {"m", "n"}) {
        std::string text = "<maps>";
        for (const std::string kind : {"map", "vector_map", "collection_map", "vector_collection_map"}) {
            text += '<' + kind + " name='" + kind + name + "'><item name='i'/>";
            text += (kind == "collection_map" ? "" : "<arg name='v'/>") + ("</" + kind + '>');
        }
        folder.write(name, text + "</maps>");
    }
    map_collection maps;
    maps.load(folder.path("m"));
    const auto expect_answers = [](map_collection& from) {
        ustring8 value;
        std::vector<ustring8> values;
        std::map<ustring8, ustring8> attribs;
        std::vector<std::map<ustring8, ustring8>> sets;
        EXPECT_TRUE(from.get_arg("mapm", "i", value) && value == "v" && from.type("mapm") == MT_SIMPLE);
        EXPECT_TRUE(from.get_args("vector_mapm", "i", values) && values.size() == 1 && from.has_item("mapm", "i"));
        EXPECT_TRUE(from.get_attribs("collection_mapm", "i", attribs) && attribs.at("name") == "i");
        EXPECT_TRUE(from.get_attrib("collection_mapm", "i", "name", value) && value == "i");
        EXPECT_TRUE(from.get_args_vector("vector_collection_mapm", "i", sets) && sets.size() == 1);
        EXPECT_TRUE(from.has_key("vector_collection_mapm", "name") && !from.has_key("mapm", "name"));
        EXPECT_TRUE(from.is_loaded("mapm") && from.maps().size() >= 4 && from.begin() != from.end());
    };
    std::vector<std::thread> threads;
    for (int i = 0; i < 6; ++i) {
        threads.emplace_back([&, i] {
            for (int again = 0; again < 40; ++again) {
                expect_answers(maps);
                if (i < 3) continue;
                map_collection copy = maps;
                EXPECT_EQ(copy.load(folder.path("n")).type(), map_error_t::no_error);
                expect_answers(copy);
                copy = i == 3 ? map_collection() : maps;
                EXPECT_FALSE(copy.is_loaded("mapn"));
            }
        });
    }
    for (auto& thread : threads) thread.join();
}
