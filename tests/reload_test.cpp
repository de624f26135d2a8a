// Files change while threads query them: examples/live_maps.h.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "documents.h"
#include "examples/live_maps.h"

namespace {

namespace fs = std::filesystem;

// Each file of a set has a map that records its generation. Sizes differ in case the times do not.
void write(const documents::folder& home, const std::string& set, int generation, const std::string& fault = "")
{
    const auto map = [&](const std::string& name) {
        const std::string text =
            std::to_string(generation) + "'/></map>" + std::string(static_cast<std::size_t>(generation), ' ');
        return "<map name='" + name + "'><item name='generation'/><arg name='" + text;
    };
    home.write(set + "/c", "<maps>" + map("c") + fault + "</maps>");
    home.write(set + "/b", "<maps>" + map("b") + "</maps>");
    home.write(set + "/a", "<maps>" + map("a") + "<include file='b'/><include file='c'/></maps>");
}

// -1 if nothing is loaded, -2 if the maps disagree.
int generation(data_mapper4::map_collection& maps)
{
    std::string texts[3] = {"-1", "-1", "-1"};
    for (int i = 0; i < 3; ++i) maps.get_arg(std::string(1, "abc"[i]), "generation", texts[i]);
    return texts[0] == texts[1] && texts[1] == texts[2] ? std::stoi(texts[0]) : -2;
}

}  // namespace

// The first poll after a change waits for the files to settle, and the next one loads. If it finds other files, the one
// after it loads again.
TEST(LiveMaps, AreLoadedWhenTheFilesAreStable)
{
    const documents::folder home;
    live_maps maps(home.system_path("set/a"));
    const auto expect = [&](const std::vector<bool>& polls, int loaded, std::size_t errors) {
        for (const bool each : polls) EXPECT_EQ(maps.poll(), each);
        EXPECT_EQ(generation(*maps.snapshot()), loaded);
        EXPECT_EQ(maps.report().errors(), errors);
    };
    expect({true}, -1, 1);
    write(home, "set", 0);
    expect({false, false, true, false}, 0, 0);
    write(home, "set", 1);
    expect({false}, 0, 0);
    write(home, "set", 2, "<include file='d'/>");
    expect({false, true, true}, 0, 1);
    auto held = maps.snapshot();
    home.write("set/d", "<maps/>");
    expect({false, true, false}, 2, 0);
    home.write("set/d", "<maps><include file='e'/></maps>");
    home.write("set/e", "<maps/>");
    expect({false, false, true, false}, 2, 0);

    EXPECT_EQ(generation(*held), 0);
    const std::weak_ptr<data_mapper4::map_collection> old = held;
    held.reset();
    EXPECT_FALSE(old.expired()) << "a reader had to destroy a collection";
    maps.poll();
    EXPECT_TRUE(old.expired());
}

#if defined(__linux__)

// Odd generations are faulty. A set is replaced at once by renaming a symbolic link to its folder.
TEST(LiveMaps, AreOfOneGenerationInAllThreads)
{
    constexpr int generations = 100;
    const documents::folder home;
    for (int i = 0; i <= generations; ++i) write(home, std::to_string(i), i, i % 2 == 0 ? "" : "<x/>");
    const auto publish = [&](int number) {
        fs::create_directory_symlink(std::to_string(number), home.system_path("next"));
        fs::rename(home.system_path("next"), home.system_path("set"));
    };
    publish(0);
    live_maps maps(home.system_path("set/a"));
    const auto rest = [] { std::this_thread::sleep_for(std::chrono::microseconds(100)); };
    std::atomic<bool> is_done = false;
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([&] {
            for (int last = 0; !is_done && !testing::Test::HasFailure(); rest()) {
                const int seen = generation(*maps.snapshot());
                EXPECT_TRUE(seen >= last && seen % 2 == 0) << seen << " after " << last;
                last = seen;
            }
        });
    }
    threads.emplace_back([&] {
        for (; !is_done; rest()) maps.poll();
    });
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes(2);
    for (int i = 1; i <= generations; ++i) {
        publish(i);
        rest();
        const auto is_awaited = [&] { return i % 10 == 0 && generation(*maps.snapshot()) != i; };
        while (is_awaited() && !testing::Test::HasFailure() && std::chrono::steady_clock::now() < deadline) rest();
    }
    is_done = true;
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(generation(*maps.snapshot()), generations) << "the last set never arrives";
}

#endif
