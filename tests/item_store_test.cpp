// The store that holds the items of a table, and its index.
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <random>

#include "data_mapper/item_writer.h"
#include "documents.h"

using namespace data_mapper4;

namespace {

using rows = std::vector<std::vector<ustring8>>;
using model = std::vector<std::pair<ustring8, rows>>;  // in the order in which the items were added

// Adds an item with these rows; a value that equals the key is added as the key. Returns false if the key is taken.
bool write(item_writer& to, const ustring8& key, const rows& values)
{
    if (!to.begin(key)) return false;
    for (const auto& row : values) {
        for (const ustring8& each : row) each == key ? to.add_key() : to.add(each);
        to.end_row();
    }
    return true;
}

void expect_equal(const item_store& store, const model& expected)
{
    model found;
    store.for_each(
        [&](const stored_item& item) { item.values().copy_to(found.emplace_back(item.key(), rows()).second); });
    EXPECT_EQ(found, expected);
    EXPECT_EQ(store.size(), expected.size());
    std::map<ustring8, rows> in_order(expected.begin(), expected.end());
    auto next = in_order.begin();
    for (const stored_item& item : store.sorted()) EXPECT_EQ(item.key(), (next++)->first);
    EXPECT_TRUE(next == in_order.end());
    for (const auto& [key, values] : expected) {
        const stored_item item = store.find(key);
        ASSERT_TRUE(item && item.key() == key) << key;
        EXPECT_FALSE(store.find(key + '!')) << key;
    }
}

// The first 16 bytes of keys of that size. The keys' hashes are equal if the rest of their bytes are: in each key, the
// second eight bytes undo the effect of the first eight.
std::vector<ustring8> colliding_keys(std::size_t count, std::size_t size)
{
    std::vector<ustring8> keys;
    for (std::uint64_t i = 0; i < count; ++i) {
        std::uint64_t hash = size * 0x9E3779B97F4A7C15U;
        hash = (hash ^ i) * 0x9E3779B97F4A7C15U;
        const std::uint64_t halves[] = {i, hash ^ hash >> 32};
        keys.emplace_back(reinterpret_cast<const char*>(halves), sizeof(halves));
    }
    return keys;
}

}  // namespace

TEST(ItemStore, KeepsKeysAndValuesOfAnySize)
{
    item_store store;
    item_writer writer(store);
    model expected;
    for (const int size : {0, 1, 7, 8, 124, 125, 126, 127, 128, 129, 16380, 16381, 16384, 2097152}) {
        const ustring8 text(static_cast<std::size_t>(size), 't');
        const ustring8 key = text + 'k';
        const rows values[] = {
            {}, {{}}, {{text}}, {{"", text, "", "", text}, {}, {key, ""}}, {{}, std::vector<ustring8>(200)}};
        for (const rows& each : values) {
            expected.emplace_back(key + std::to_string(expected.size()), each);
            EXPECT_TRUE(write(writer, expected.back().first, each) && writer.end());
        }
    }
    expect_equal(store, expected);
    writer.trim();
    expect_equal(store, expected);
}

TEST(ItemStore, AgreesWithAMap)
{
    std::mt19937 random(1);
    for (int round = 0; round < 60; ++round) {
        item_store stores[2];
        model models[2];
        for (std::size_t steps = 8 + random() % 600; steps != 0; --steps) {
            const std::size_t i = random() % 2;
            item_writer writer(stores[i]);
            const ustring8 key = std::string(random() % 3 * 9, 'k') + std::to_string(random() % 300);
            const auto is_key = [&](const auto& item) { return item.first == key; };
            const bool is_new = std::none_of(models[i].begin(), models[i].end(), is_key);
            const rows values(random() % 3, std::vector<ustring8>(random() % 3, std::string(random() % 3, 'v')));
            if (random() % 20 == 0) writer.expect(random() % 100, random() % 1000);
            ASSERT_EQ(write(writer, key, values), is_new);
            if (is_new && random() % 4 != 0) {
                ASSERT_TRUE(writer.end());
                models[i].emplace_back(key, values);
            }
            if (random() % 50 == 0) writer.trim();
            if (random() % 100 == 0) stores[1 - i] = stores[i], models[1 - i] = models[i];
        }
        for (const int i : {0, 1}) expect_equal(stores[i], models[i]);
    }
}

// The limit is for the sanitizers; without the ordered index, the first keys take minutes there.
TEST(ItemStore, IsNotSlowedDownByKeysThatCollide)
{
    const std::size_t many = 100000;
    for (const std::size_t group : {many, std::size_t{500}, std::size_t{50}}) {
        const std::vector<ustring8> first_parts = colliding_keys(group, 24);
        const auto key = [&](std::size_t i) { return first_parts[i % group] + std::to_string(10000000 + i / group); };
        ASSERT_EQ(item_index::hash_of(key(0)), item_index::hash_of(key(group - 1))) << "the test must follow the hash";
        const auto begin = std::chrono::steady_clock::now();
        item_store store;
        item_writer writer(store);
        for (std::size_t i = 0; i < many; ++i) {
            ASSERT_TRUE(writer.begin(key(i)) && writer.end() && !writer.begin(key(i)) && store.find(key(i)));
        }
        item_store copy = store;
        EXPECT_TRUE(item_writer(copy).begin("another") && copy.find(key(100)) && !copy.find("another"));
        EXPECT_EQ(copy.sorted().size(), many);
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20)) << group;
    }
}

// Otherwise lookups among a million items would be several times slower.
TEST(ItemStore, FindsItemsByTheirHashUnlessSomebodyChoseTheKeys)
{
    const auto padded = [](std::size_t i, std::size_t width) {
        const std::string digits = std::to_string(i);
        return std::string(width - std::min(width, digits.size()), '0') + digits;
    };
    const std::function<ustring8(std::size_t)> patterns[] = {
        [](std::size_t i) { return std::to_string(i); },
        [](std::size_t i) { return "the item " + std::to_string(i); },
        [](std::size_t i) { return std::to_string(i) + " is the item's number"; },
        [&](std::size_t i) { return padded(i, 8); },
        [&](std::size_t i) { return padded(i, 16); },
        [&](std::size_t i) { return "k" + padded(i * 64, 12); },
        [](std::size_t i) { return "menu.file." + std::to_string(i % 300) + ".label" + std::to_string(i / 300); },
        [](std::size_t i) { return std::string(i % 500, 'a') + std::to_string(i / 500); },
        [](std::size_t i) { return std::string(1, static_cast<char>(i)) + static_cast<char>(i >> 8) + "x"; },
    };
    for (const auto& pattern : patterns) {
        item_store store;
        item_writer writer(store);
        for (std::size_t i = 0; i < 60000; ++i) ASSERT_TRUE(writer.begin(pattern(i)) && writer.end());
        for (const std::size_t room : {60000U, 90000U, 180000U, 700000U}) {
            EXPECT_FALSE(item_index::make(store.records(), room)->is_ordered()) << pattern(12345) << ' ' << room;
        }
    }
    item_store store;
    item_writer writer(store);
    for (const ustring8& key : colliding_keys(1000, 16)) ASSERT_TRUE(writer.begin(key) && writer.end());
    EXPECT_TRUE(item_index::make(store.records(), 1000)->is_ordered());
}
