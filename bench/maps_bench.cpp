// Loading: from a path to filled tables, including the destruction of everything created. Checking: the same, with a
// report. Parsing: the parser's part of that. Growth: how the time grows if a file grows to four times its size in one way.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <cstdlib>
#include <iostream>
#include <set>

#include "contender.h"
#include "data_mapper/load_report.h"

namespace bench {

namespace {

// Stops unless the contender's tables equal the library's. Called once for each cell and contender.
template <class load_function>
void compare(const std::string& row, const cell& in, load_function load_into)
{
    static std::set<std::string> compared;
    if (!compared.insert(row).second) return;
    map_collection maps;
    host_tables tables;
    require(load(in.path(), maps) && load_into(tables), row + " cannot load");
    require(is_equal(maps, tables), row + " has other tables than the library");
}

template <class function>
void measure(benchmark::State& state, const cell& in, function work)
{
    malloc_trim(0);  // so that no contender uses the heap that another one has left
    for (auto _ : state) work();
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(in.size()));
}

template <class tables, class load_function>
void measure_load(benchmark::State& state, const std::string& row, const cell& in, load_function load_into)
{
    if constexpr (std::is_same_v<tables, host_tables>) compare(row, in, load_into);
    measure(state, in, [&] {
        tables loaded;
        benchmark::DoNotOptimize(load_into(loaded));
    });
}

void register_loads(const cell& in)
{
    const auto add = [&](const std::string& name, auto measure_row) {
        const std::string row = "load/" + in.name + "/" + name;
        benchmark::RegisterBenchmark(row.c_str(), [=](auto& state) { measure_row(state, row); });
    };
    add(library_name, [in](auto& state, auto& row) {
        const std::wstring path = library_path(in.path());
        measure_load<map_collection>(state, row, in, [&](auto& maps) { return maps.load(path); });
    });
    for (const peer& by : peers()) {
        add(by.name, [in, by](auto& state, auto& row) {
            const std::string path = in.path();
            measure_load<host_tables>(state, row, in, [&](auto& tables) { return load(by, path, tables); });
        });
    }
    if (in.kibibytes == 0) return;
    add("floor", [in](auto& state, auto& row) { measure_load<host_tables>(state, row, in, floor_of(in.path())); });
}

void register_check(const cell& in)
{
    benchmark::RegisterBenchmark(("check/" + in.name + "/" + library_name).c_str(), [in](auto& state) {
        measure(state, in, [path = in.path()] { require(check_maps(path).errors() == 0, "faults in " + path); });
    });
}

void parse_library(const std::string& path, bool pops_nodes)
{
    xml_stream_parser parser(NUVEK_2_18::strings::utf8_to_utf16(path), xml_stream_parser::header_optional);
    require(parser.parse() == xml_stream_parser::end_of_file, "cannot parse " + path);
    while (pops_nodes && !parser.node_queue_empty()) benchmark::DoNotOptimize(parser.node_queue_pop());
}

void register_parses(const cell& in)
{
    const std::string rows = "parse/" + in.name + "/";
    for (const bool pops_nodes : {false, true}) {
        benchmark::RegisterBenchmark((rows + library_name + (pops_nodes ? "_pop" : "")).c_str(), [=](auto& state) {
            measure(state, in, [path = in.path(), pops_nodes] { parse_library(path, pops_nodes); });
        });
    }
    for (const peer& by : peers()) {
        if (!by.is_parser) continue;
        benchmark::RegisterBenchmark((rows + by.name).c_str(), [=](auto& state) {
            measure(state, in, [&, path = in.path()] { require(by.read(path, nullptr), "cannot parse " + path); });
        });
    }
}

std::string growing_document(const std::string& what, std::size_t n)
{
    for (std::size_t i = 0; what == "includes" && i < n; ++i) {
        const std::string name = number_at(i);
        written_once("includes/" + name + ".xml",
                     [&] { return shape{{"<maps><map name='" + name + "'><item name='a'/></map></maps>"}}; });
    }
    return written_once("growth_" + what + "_" + std::to_string(n) + ".xml", [&] { return shape_of(what, n); });
}

// Nested elements are not a map file, so that row measures the parser, with all nodes popped.
void measure_growth(benchmark::State& state, const std::string& what, std::size_t n)
{
    const std::string path = growing_document(what, n);
    for (auto _ : state) {
        map_collection maps;
        if (what == "nesting") {
            parse_library(path, true);
        } else {
            require(load(path, maps) && !maps.maps().empty(), "cannot load " + path);
        }
    }
}

void register_all()
{
    for (const cell& in : load_cells()) {
        register_loads(in);
        register_check(in);
    }
    for (const cell& in : load_cells()) {
        if (in.is_shuffled || in.is_dotted) register_parses(in);
    }
    register_lookups();
    register_copies();
    register_tables();
    static constexpr std::pair<const char*, std::size_t> dimensions[] = {
        {"items", 5000},   {"maps", 2000},     {"includes", 250}, {"attributes", 2500}, {"nesting", 50000},
        {"name", 1 << 12}, {"value", 1 << 12}, {"text", 1 << 12}, {"comment", 1 << 12}};
    for (const auto& [what, n] : dimensions) {
        for (const std::size_t times : {1U, 4U}) {
            benchmark::RegisterBenchmark(
                ("growth/" + std::string(what) + (times == 1 ? "/n" : "/4n")).c_str(),
                [=, what = what, n = n](auto& state) { measure_growth(state, what, times * n); });
        }
    }
}

}  // namespace

}  // namespace bench

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
    benchmark::AddCustomContext("compiler", BENCH_COMPILER);
    for (const bench::peer& by : bench::peers()) benchmark::AddCustomContext(by.name, by.version);
    try {
        bench::register_all();
        benchmark::RunSpecifiedBenchmarks();
    } catch (const std::exception& error) {
        std::cerr << "maps_bench: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
