// Prints how much memory loads take, as JSON:
//
//     memory_probe CONTENDER FILE    "peak": the peak of resident bytes, less those before the load; "tables": the
//                                    bytes still allocated after it, which is what its tables take
//     memory_probe                   the same for each cell and contender, each in a process of its own
#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>

#include "contender.h"

namespace {

using namespace bench;

// The value of a line such as "VmRSS:  1234 kB", in bytes.
std::size_t status(const std::string& name)
{
    std::ifstream lines("/proc/self/status");
    std::size_t kibibytes = 0;
    for (std::string word; lines >> word;) {
        if (word == name + ":") lines >> kibibytes;
    }
    return kibibytes << 10;
}

std::size_t allocated()
{
    const struct mallinfo2 heap = mallinfo2();
    return heap.uordblks + heap.hblkhd;
}

// Loads a small file first, so that code being paged in and a parser's one-time setup do not count for the load.
template <class tables, class load_function>
void report(const std::string& path, load_function load_into)
{
    tables small, loaded;
    require(load_into(example_document("kinds.xml"), small), "cannot load the example");
    malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << 5;  // resets the peak of resident bytes
    const std::size_t resident = status("VmRSS");
    const std::size_t before = allocated();
    require(load_into(path, loaded), "cannot load " + path);
    const std::size_t left = allocated() - before;
    std::cout << "{\"peak\": " << status("VmHWM") - resident << ", \"tables\": " << left << "}\n";
}

void report(const std::string& contender, const std::string& path)
{
    if (contender == library_name) {
        return report<map_collection>(path, [](const auto& from, auto& maps) { return load(from, maps); });
    }
    const auto by = std::find_if(peers().begin(), peers().end(), [&](auto& each) { return contender == each.name; });
    require(by != peers().end(), "no contender " + contender);
    report<host_tables>(path, [&](const auto& from, auto& tables) { return load(*by, from, tables); });
}

void report_all(const std::string& program)
{
    std::vector<std::string> contenders = {library_name};
    for (const peer& each : peers()) contenders.emplace_back(each.name);
    const char* separator = "[";
    for (const cell& in : load_cells()) {
        for (const std::string& contender : contenders) {
            std::cout << separator << "{\"cell\": \"" << in.name << "\", \"size\": " << in.size()
                      << ", \"contender\": \"" << contender << "\", \"figures\": " << std::flush;
            require(std::system((program + " " + contender + " " + in.path()).c_str()) == 0, "a load failed");
            separator = "},\n";
        }
    }
    std::cout << "}]\n";
}

}  // namespace

int main(int argc, char** argv)
{
    try {
        argc == 3 ? report(argv[1], argv[2]) : report_all(argv[0]);
    } catch (const std::exception& error) {
        std::cerr << "memory_probe: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
