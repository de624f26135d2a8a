// Tables by themselves: views, compared with flat and other hash maps of views; lookups in many threads; destruction.
#include <absl/container/flat_hash_map.h>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <random>
#include <unordered_map>

#include "contender.h"

namespace bench {

namespace {

const std::string map_name = "table";

// A simple map, hash maps of views with the same items, and names to look up, in random order.
struct views
{
    explicit views(std::size_t items)
    {
        require(load(table_document(MT_SIMPLE, items), maps), "cannot load a table");
        for (const auto& [name, item] : maps.view(map_name)) {
            flat.emplace(name, item.text());
            unordered.emplace(name, item.text());
        }
        for (std::size_t i = 0; i < std::max<std::size_t>(items, 1000); ++i) {
            names[1].push_back(item_name(i % items));
            names[0].push_back(missing_name(i % items));
        }
        for (auto& each : names) std::shuffle(each.begin(), each.end(), std::mt19937(2));
    }

    map_collection maps;
    absl::flat_hash_map<std::string_view, std::string_view> flat;
    std::unordered_map<std::string_view, std::string_view> unordered;
    std::vector<std::string> names[2];  // missing and present ones
};

views& views_of(std::size_t items)
{
    static std::map<std::size_t, views> known;
    return known.try_emplace(items, items).first->second;
}

// Flattened, so that no contender pays for calls that the compiler can inline.
template <class question>
[[gnu::flatten]] void ask_all(benchmark::State& state, const std::vector<std::string>& names, question ask)
{
    auto name = names.begin();
    for (auto _ : state) {
        benchmark::DoNotOptimize(ask(*name));
        if (++name == names.end()) name = names.begin();
    }
}

template <class table>
auto in_hash_map(const table& of)
{
    return [&of](const std::string& name) {
        const auto found = of.find(name);
        return found == of.end() ? std::nullopt : std::optional(found->second);
    };
}

void register_views(bool is_hit, std::size_t items)
{
    const std::string rows = std::string("view/") + (is_hit ? "hit/" : "miss/") + std::to_string(items) + "/";
    const auto add = [&](const std::string& name, auto make_question) {
        benchmark::RegisterBenchmark((rows + name).c_str(), [=](auto& state) {
            views& of = views_of(items);
            const auto ask = make_question(of);
            const auto& names = of.names[is_hit ? 1 : 0];
            require(ask(names.front()).has_value() == is_hit, "a lookup returns the wrong result");
            ask_all(state, names, ask);
        });
    };
    add(library_name,
        [](views& of) { return [view = of.maps.view(map_name)](const std::string& name) { return view.text(name); }; });
    add("flat_hash_map", [](views& of) { return in_hash_map(of.flat); });
    add("unordered_map", [](views& of) { return in_hash_map(of.unordered); });
}

void register_threads()
{
    for (const int threads : {1, 8}) {
        const auto has_items = [](benchmark::State& state) {
            views& of = views_of(1000);
            ask_all(state, of.names[1], [&](const std::string& name) { return of.maps.has_item(map_name, name); });
        };
        benchmark::RegisterBenchmark((std::string("threads/has_item/") + library_name).c_str(), has_items)
            ->Threads(threads)
            ->UseRealTime();
    }
}

// Times only the destruction of what was just loaded.
template <class tables, class load_function>
void measure_destruction(benchmark::State& state, load_function load_into)
{
    for (auto _ : state) {
        auto loaded = std::make_unique<tables>();
        require(load_into(*loaded), "cannot load");
        const auto begin = std::chrono::steady_clock::now();
        loaded.reset();
        state.SetIterationTime(std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count());
    }
}

void register_destruction(const cell& in)
{
    constexpr int few = 5;  // otherwise the loads in between would take hours
    const std::string rows = "destroy/" + in.name + "/";
    benchmark::RegisterBenchmark((rows + library_name).c_str(),
                                 [in](auto& state) {
                                     measure_destruction<map_collection>(
                                         state, [&](auto& maps) { return load(in.path(), maps); });
                                 })
        ->UseManualTime()
        ->Iterations(few);
    benchmark::RegisterBenchmark((rows + "host").c_str(),
                                 [in](auto& state) {
                                     measure_destruction<host_tables>(
                                         state, [&](auto& tables) { return load(rapidxml, in.path(), tables); });
                                 })
        ->UseManualTime()
        ->Iterations(few);
}

}  // namespace

void register_tables()
{
    for (const bool is_hit : {true, false}) {
        for (const std::size_t items : {10U, 1000U, 100000U, 1000000U}) register_views(is_hit, items);
    }
    register_threads();
    for (const cell& in : load_cells()) register_destruction(in);
}

}  // namespace bench
