#include <cstdlib>
#include <exception>
#include <iostream>

#include "benches.h"
#include "contender.h"

namespace bench {

void stop(const std::string& message)
{
    std::cerr << "maps_bench: " << message << '\n';
    std::exit(1);
}

}  // namespace bench

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
    benchmark::AddCustomContext("compiler", BENCH_COMPILER);
    for (const bench::peer& by : bench::peers()) benchmark::AddCustomContext(by.name, by.version);
    try {
        bench::register_load();
        bench::register_parse();
        bench::register_lookups();
        bench::register_copies();
        bench::register_growth();
        benchmark::RunSpecifiedBenchmarks();
    } catch (const std::exception& error) {
        bench::stop(error.what());
    }
    benchmark::Shutdown();
    return 0;
}
