// Copies of tables and collections share their items, which cannot be observed.
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
        load("t", *documents::parsed(document + "</maps>", 1));
    }

    std::string content() const { return documents::rendered(m_items.read()); }
};

}  // namespace

TEST(Copies, ShareItemsUntilOneChanges)
{
    table original;
    original.add({"a"}, "1");
    table copy = original;
    EXPECT_TRUE(copy.m_items.is_shared_with(original.m_items)) << "the items are copied although nobody changed them";
    copy.add({"b"}, "2");
    const table second = copy;
    copy.add({"c"}, "3");
    EXPECT_EQ(original.content() + second.content() + copy.content(), "(a=(1))(a=(1),b=(2))(a=(1),b=(2),c=(3))");
    copy = original;
    original.clear();
    copy = *&copy;
    EXPECT_EQ(original.content() + copy.content(), "()(a=(1))");
}

TEST(Copies, AreOutOfReachOfEarlierIterators)
{
    table original;
    original.add({"a"}, "1");
    const auto held = original.begin();
    const table copy = original;
    original = *&original;
    held->second.at(0) = "2";
    EXPECT_EQ(copy.content() + original.content(), "(a=(1))(a=(2))");
    original.add({"b"}, "3");
    EXPECT_EQ(std::distance(held, original.end()), 2) << "the iterator is still one of the table";
}

// Under the thread sanitizer: sharing must not show in a race.
TEST(Copies, AreIndependentInDifferentThreads)
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
                EXPECT_EQ(again.content(), "(a=(1))");
            });
        }
        original.begin()->second.at(0) = "main";
        for (auto& thread : threads) thread.join();
        EXPECT_EQ(original.content(), "(a=(main))");
    }
}

// Under the thread sanitizer: some threads query a collection while others copy it, load into the copies, assign to them
// and destroy them.
TEST(Copies, OfACollectionAreMadeWhileOthersQueryIt)
{
    const documents::folder folder;
    for (const std::string name : {"m", "n"}) folder.write(name, documents::four_maps(name));
    map_collection maps;
    maps.load(folder.path("m"));
    const std::string expected = documents::all_answers(maps, "m");
    std::vector<std::thread> threads;
    for (int i = 0; i < 6; ++i) {
        threads.emplace_back([&, i] {
            for (int again = 0; again < 40; ++again) {
                EXPECT_EQ(documents::all_answers(maps, "m"), expected);
                if (i < 3) continue;
                map_collection copy = maps;
                EXPECT_EQ(copy.load(folder.path("n")).type(), map_error_t::no_error);
                EXPECT_EQ(documents::all_answers(copy, "m"), expected);
                copy = i == 3 ? map_collection() : maps;
                EXPECT_FALSE(copy.is_loaded("nmap"));
            }
        });
    }
    for (auto& thread : threads) thread.join();
}
