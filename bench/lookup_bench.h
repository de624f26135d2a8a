#pragma once

#include <benchmark/benchmark.h>

#include <string>

namespace bench {

// Registers a row under a name such as load/1MiB/sorted/expat.
template <class function>
void add_row(const std::string& name, function measure)
{
    benchmark::RegisterBenchmark(name.c_str(), measure);
}

// The rows of lookups and of copies.
void register_lookups();

}  // namespace bench
