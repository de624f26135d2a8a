// Loading: from a path to filled tables, and their destruction with all that was made on the way. Parsing: the part of
// it that is the parser's. Growth: how the time grows when a file grows to four times its size in one way.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <cstdlib>
#include <iostream>
#include <set>

#include "contender.h"
#include "lookup_bench.h"

namespace bench {

namespace {

using data_mapper4::map_collection;
using NUVEK_2_18::parser::xml_stream_parser;

// Stops unless the tables of a contender are those of the library. Once for a cell and a contender.
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
    malloc_trim(0);  // so that no contender finds the heap that another one has left
    for (auto _ : state) work();
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(in.size()));
}

void measure_library(benchmark::State& state, const cell& in)
{
    const std::wstring path = library_path(in.path());
    measure(state, in, [&] {
        map_collection maps;
        benchmark::DoNotOptimize(maps.load(path));
    });
}

template <class load_function>
void measure_host(benchmark::State& state, const std::string& row, const cell& in, load_function load_into)
{
    compare(row, in, load_into);
    measure(state, in, [&] {
        host_tables tables;
        benchmark::DoNotOptimize(load_into(tables));
    });
}

void register_loads(const cell& in)
{
    const std::string rows = "load/" + in.name + "/";
    add_row(rows + library_name, [in](auto& state) { measure_library(state, in); });
    for (const peer& by : peers()) {
        const std::string row = rows + by.name;
        add_row(row, [=](auto& state) {
            const std::string path = in.path();
            measure_host(state, row, in, [&](host_tables& tables) { return load(by, path, tables); });
        });
    }
    if (in.kibibytes == 0) return;
    add_row(rows + "floor", [=](auto& state) {
        const floor_load least(in.path());
        measure_host(state, rows + "floor", in, [&](host_tables& tables) { return least.load(tables); });
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
        add_row(rows + library_name + (pops_nodes ? "_pop" : ""), [=](auto& state) {
            measure(state, in, [path = in.path(), pops_nodes] { parse_library(path, pops_nodes); });
        });
    }
    for (const peer& by : peers()) {
        if (!by.is_parser) continue;
        add_row(rows + by.name, [=](auto& state) {
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

// Elements inside each other are no map file, so there the parser is measured, with all its nodes taken.
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
    for (const cell& in : load_cells()) register_loads(in);
    for (const cell& in : load_cells()) {
        if (in.is_shuffled) register_parses(in);
    }
    register_lookups();
    static constexpr std::pair<const char*, std::size_t> dimensions[] = {
        {"items", 5000},   {"maps", 2000},     {"includes", 250}, {"attributes", 2500}, {"nesting", 50000},
        {"name", 1 << 12}, {"value", 1 << 12}, {"text", 1 << 12}, {"comment", 1 << 12}};
    for (const auto& [what, n] : dimensions) {
        add_row("growth/" + std::string(what) + "/n",
                [what = what, n = n](auto& state) { measure_growth(state, what, n); });
        add_row("growth/" + std::string(what) + "/4n",
                [what = what, n = n](auto& state) { measure_growth(state, what, 4 * n); });
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
