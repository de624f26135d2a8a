// Loading: from a path to filled tables, and their destruction with all that was made on the way. Parsing: the part of
// it that is the parser's.
#include <malloc.h>

#include <set>

#include "benches.h"
#include "contender.h"
#include "documents.h"
#include "platform/xml_stream_parser.h"

namespace bench {

namespace {

using data_mapper4::map_collection;
using NUVEK_2_18::parser::xml_stream_parser;

void count_bytes(benchmark::State& state, std::size_t size)
{
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * static_cast<std::int64_t>(size));
}

// Stops unless the peer's tables are those of the library. Once for a cell and a peer.
void compare(const peer& by, const cell& in)
{
    static std::set<std::string> compared;
    if (!compared.insert(in.name() + by.name).second) return;
    map_collection maps;
    host_tables tables;
    if (!load(in.path(), maps)) stop(in.name() + ": the library cannot load it");
    if (!load(by, in.path(), tables)) stop(in.name() + ": " + by.name + " cannot load it");
    const std::string found = difference(maps, tables);
    if (!found.empty()) stop(in.name() + ", " + by.name + ": " + found);
}

void load_library(benchmark::State& state, const cell& in)
{
    const std::wstring path = library_path(in.path());
    malloc_trim(0);  // so that no contender finds the heap that another one has left
    for (auto _ : state) {
        map_collection maps;
        benchmark::DoNotOptimize(maps.load(path));
    }
    count_bytes(state, in.size());
}

void load_peer(benchmark::State& state, const cell& in, const peer& by)
{
    compare(by, in);
    const std::string path = in.path();
    malloc_trim(0);
    for (auto _ : state) {
        host_tables tables;
        benchmark::DoNotOptimize(load(by, path, tables));
    }
    count_bytes(state, in.size());
}

void parse_library(benchmark::State& state, const cell& in, bool pops_nodes)
{
    const auto path = NUVEK_2_18::strings::utf8_to_utf16(in.path());
    malloc_trim(0);
    for (auto _ : state) {
        xml_stream_parser parser(path, xml_stream_parser::header_optional);
        if (parser.parse() != xml_stream_parser::end_of_file) stop(in.name() + ": the library cannot parse it");
        while (pops_nodes && !parser.node_queue_empty()) benchmark::DoNotOptimize(parser.node_queue_pop());
    }
    count_bytes(state, in.size());
}

void parse_peer(benchmark::State& state, const cell& in, const peer& by)
{
    const std::string path = in.path();
    malloc_trim(0);
    for (auto _ : state) {
        if (!by.parse(path)) stop(in.name() + ": " + by.name + " cannot parse it");
    }
    count_bytes(state, in.size());
}

}  // namespace

void register_load()
{
    for (const cell& in : load_cells()) {
        const std::string rows = "load/" + in.name() + "/";
        add_row(rows + library_name, benchmark::kMillisecond, [in](auto& state) { load_library(state, in); });
        for (const peer& by : peers()) {
            add_row(rows + by.name, benchmark::kMillisecond, [in, by](auto& state) { load_peer(state, in, by); });
        }
    }
}

void register_parse()
{
    for (const std::size_t kibibytes : {64U, 1024U, 32768U}) {
        const cell in(kibibytes, item_order::shuffled);
        const std::string rows = "parse/" + in.name() + "/";
        add_row(rows + library_name, benchmark::kMillisecond, [in](auto& state) { parse_library(state, in, false); });
        add_row(rows + library_name + "_pop", benchmark::kMillisecond,
                [in](auto& state) { parse_library(state, in, true); });
        for (const peer& by : peers()) {
            if (by.parse == nullptr) continue;
            add_row(rows + by.name, benchmark::kMillisecond, [in, by](auto& state) { parse_peer(state, in, by); });
        }
    }
}

}  // namespace bench
