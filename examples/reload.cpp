// A host that never restarts: answers from its maps while another thread loads them again whenever their files change.
// Runs until it is interrupted, or for a number of seconds. While it runs, edit a file, break it, and mend it.
//
//     reload examples/world/world.xml territory_names_en CH [SECONDS]
#include <atomic>
#include <chrono>
#include <iostream>
#include <string>
#include <thread>

#include "live_maps.h"

namespace {

constexpr std::chrono::milliseconds interval(200);

// The files are loaded at every poll as long as they are faulty, so print a report only when it changes.
void watch(live_maps& maps, const std::atomic<bool>& is_stopping)
{
    std::string known = maps.report().text();
    while (!is_stopping) {
        std::this_thread::sleep_for(interval);
        if (!maps.poll()) continue;
        const std::string text = maps.report().text();
        if (text != known) std::cerr << (text.empty() ? "the maps are valid again\n" : text);
        known = text;
    }
}

// A host has many threads like this one.
void answer(const live_maps& maps, const std::string& map, const std::string& item, std::chrono::seconds duration)
{
    const auto start = std::chrono::steady_clock::now();
    std::string known;
    while (duration.count() == 0 || std::chrono::steady_clock::now() - start < duration) {
        const auto snapshot = maps.snapshot();
        std::string text = "(no such item)";
        snapshot->get_arg(map, item, text);
        if (text != known) std::cout << map << " / " << item << ": " << text << std::endl;
        known = text;
        std::this_thread::sleep_for(interval);
    }
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 4 && argc != 5) {
        std::cerr << "usage: reload MASTER_FILE MAP ITEM [SECONDS]\n";
        return 2;
    }
    live_maps maps(argv[1]);
    std::cerr << maps.report().text();
    std::atomic<bool> is_stopping = false;
    std::thread watcher([&] { watch(maps, is_stopping); });
    answer(maps, argv[2], argv[3], std::chrono::seconds(argc == 5 ? std::stoi(argv[4]) : 0));
    is_stopping = true;
    watcher.join();
}
