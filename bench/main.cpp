#include <cstdlib>
#include <exception>
#include <iostream>

#include "benches.h"

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
    try {
        bench::register_load();
        bench::register_parse();
        benchmark::RunSpecifiedBenchmarks();
    } catch (const std::exception& error) {
        bench::stop(error.what());
    }
    benchmark::Shutdown();
    return 0;
}
