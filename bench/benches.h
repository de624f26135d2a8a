// What the sources of the benchmarks share. Each registers its rows; files and tables are made when a row first needs
// them, so that a filter pays only for what it selects.
#pragma once

#include <benchmark/benchmark.h>

#include <string>

namespace bench {

void register_load();
void register_parse();
void register_lookups();
void register_copies();
void register_growth();

// Ends the whole run: a figure from contenders that do not do the same work is worse than none.
[[noreturn]] void stop(const std::string& message);

// Registers a row under a name such as load/1MiB/sorted/expat.
template <class function>
benchmark::internal::Benchmark* add_row(const std::string& name, benchmark::TimeUnit unit, function measure)
{
    return benchmark::RegisterBenchmark(name.c_str(), measure)->Unit(unit);
}

}  // namespace bench
