// Prints what one load takes in memory, in a process of its own:
//
//     memory_probe CONTENDER FILE    "peak": the most resident bytes, over those before the load; "tables": the bytes
//                                    that it left allocated, which is what its tables take
//     memory_probe --cells           the contenders, and the cells with their sizes and paths, for use above
#include <malloc.h>

#include <cstring>
#include <fstream>
#include <iostream>

#include "contender.h"
#include "documents.h"

namespace {

using namespace bench;

// A line such as "VmRSS:  1234 kB", in bytes.
std::size_t status(const std::string& name)
{
    std::ifstream lines("/proc/self/status");
    std::string word;
    std::size_t kibibytes = 0;
    while (lines >> word) {
        if (word == name + ":") lines >> kibibytes;
    }
    return kibibytes << 10;
}

// Lets the highest count of resident bytes begin anew.
void forget_peak()
{
    std::ofstream("/proc/self/clear_refs") << 5;
}

std::size_t allocated()
{
    const struct mallinfo2 heap = mallinfo2();
    return heap.uordblks + heap.hblkhd;
}

// A small file is loaded first: the code that is paged in, and what a parser sets up once and keeps, is not the load's.
template <class tables, class load_function>
int report(const std::string& path, load_function load_into)
{
    tables small;
    if (!load_into(example_document("kinds.xml"), small)) return 1;
    malloc_trim(0);
    forget_peak();
    const std::size_t resident = status("VmRSS");
    const std::size_t before = allocated();
    tables loaded;
    if (!load_into(path, loaded)) return 1;
    const std::size_t left = allocated() - before;
    const std::size_t peak = status("VmHWM") - resident;
    std::cout << "{\"peak\": " << peak << ", \"tables\": " << left << "}\n";
    return 0;
}

int print_cells()
{
    std::cout << "contenders " << library_name;
    for (const peer& each : peers()) std::cout << ' ' << each.name;
    std::cout << '\n';
    for (const cell& each : load_cells()) {
        std::cout << "cell " << each.name() << ' ' << each.size() << ' ' << each.path() << '\n';
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc == 2 && std::strcmp(argv[1], "--cells") == 0) return print_cells();
    if (argc == 3 && std::strcmp(argv[1], library_name) == 0) {
        using data_mapper4::map_collection;
        return report<map_collection>(argv[2], [](const auto& path, auto& maps) { return load(path, maps); });
    }
    for (const peer& by : peers()) {
        if (argc != 3 || std::strcmp(argv[1], by.name) != 0) continue;
        return report<host_tables>(argv[2], [&](const auto& path, auto& tables) { return load(by, path, tables); });
    }
    std::cerr << "usage: memory_probe CONTENDER FILE | memory_probe --cells\n";
    return 2;
}
