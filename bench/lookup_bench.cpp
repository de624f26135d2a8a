// Lookups, compared with those that a host would write: find the map, find the item, copy what it holds. Also copies of
// whole collections and tables, including their destruction.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>

#include "contender.h"

namespace bench {

namespace {

using attribute_set = std::map<std::string, std::string>;
using names = std::vector<std::string>;

const std::string map_name = "table";

// Outputs, reused from one lookup to the next.
struct answer
{
    std::string value;
    std::vector<std::string> values;
    attribute_set attribs;
    std::vector<attribute_set> sets;
};

// One map, as the library and as a host hold it, and names to look up.
struct table_pair
{
    table_pair(map_type type, std::size_t items)
    {
        const std::string path = table_document(type, items);
        require(load(path, library) && load(peers().front(), path, host), "cannot load " + path);
        std::vector<std::size_t> numbers;
        for (std::size_t i = 0; i < std::max<std::size_t>(items, 1000); ++i) numbers.push_back(i % items);
        std::shuffle(numbers.begin(), numbers.end(), std::mt19937(2));
        for (const std::size_t number : numbers) {
            present.push_back(item_name(number));
            missing.push_back(missing_name(number));
        }
    }

    map_collection library;
    host_tables host;
    names present;
    names missing;
};

table_pair& tables_of(map_type type, std::size_t items)
{
    static std::map<std::pair<map_type, std::size_t>, table_pair> known;
    return known.try_emplace({type, items}, type, items).first->second;
}

// Flattened, so that no host pays for calls that the compiler can inline.
template <class tables, class question>
[[gnu::flatten]] void ask_all(benchmark::State& state, tables& of, const names& all, bool expected, question ask)
{
    answer to;
    require(ask(of, all.front(), to) == expected, "a lookup returns the wrong result");
    auto name = all.begin();
    for (auto _ : state) {
        benchmark::DoNotOptimize(ask(of, *name, to));
        if (++name == all.end()) name = all.begin();
    }
}

// Rows such as lookup/get_arg/hit/1000/host. The library and the host look up the same names: those of items, or the
// given present and missing ones.
template <class library_question, class host_question>
void add_question(const std::string& getter, map_type type, library_question ask_library, host_question ask_host,
                  const names& present = {}, const names& missing = {})
{
    const auto add = [&](bool is_hit, std::size_t items) {
        const std::string rows = "lookup/" + getter + (is_hit ? "/hit/" : "/miss/") + std::to_string(items) + "/";
        const auto names_in = [=, given = is_hit ? present : missing](const table_pair& of) -> const names& {
            return !given.empty() ? given : is_hit ? of.present : of.missing;
        };
        benchmark::RegisterBenchmark((rows + library_name).c_str(), [=](auto& state) {
            table_pair& of = tables_of(type, items);
            ask_all(state, of.library, names_in(of), is_hit, ask_library);
        });
        benchmark::RegisterBenchmark((rows + "host").c_str(), [=](auto& state) {
            const table_pair& of = tables_of(type, items);
            ask_all(state, of.host, names_in(of), is_hit, ask_host);
        });
    };
    for (const bool is_hit : {true, false}) {
        for (const std::size_t items : {10U, 1000U, 100000U, 1000000U}) add(is_hit, items);
    }
}

template <class value>
const value* find(const std::map<std::string, value>& values, const std::string& name)
{
    const auto found = values.find(name);
    return found == values.end() ? nullptr : &found->second;
}

// A host's lookup of an item: calls the function with the table and what the item holds, or null, and returns its
// result.
template <map_type kind, class function>
auto in_item(function use)
{
    return [use](const host_tables& host, const std::string& name, answer& to) {
        const auto* const table = find(std::get<kind>(host), map_name);
        return table != nullptr && use(*table, find(table->items, name), to);
    };
}

void fill(attribute_set& attribs, const names& schema, const row& values)
{
    for (std::size_t i = 0; i < schema.size(); ++i) attribs.emplace(schema[i], values[i]);
}

template <class value>
void copy_all(benchmark::State& state, const value& of)
{
    for (auto _ : state) {
        value copy(of);
        benchmark::DoNotOptimize(copy);
    }
}

}  // namespace

void register_lookups()
{
    add_question(
        "get_arg", MT_SIMPLE,
        [](auto& maps, const auto& name, auto& to) { return maps.get_arg(map_name, name, to.value); },
        in_item<MT_SIMPLE>([](auto&, const auto* text, answer& to) {
            if (text != nullptr) to.value = *text;
            return text != nullptr;
        }));
    add_question(
        "get_args", MT_VECTOR,
        [](auto& maps, const auto& name, auto& to) { return maps.get_args(map_name, name, to.values); },
        in_item<MT_VECTOR>([](auto&, const auto* texts, answer& to) {
            texts != nullptr ? void(to.values = *texts) : to.values.clear();
            return texts != nullptr;
        }));
    add_question(
        "get_attribs", MT_COLLECTION,
        [](auto& maps, const auto& name, auto& to) { return maps.get_attribs(map_name, name, to.attribs); },
        in_item<MT_COLLECTION>([](const auto& table, const auto* values, answer& to) {
            to.attribs.clear();
            if (values != nullptr) fill(to.attribs, table.schema, *values);
            return values != nullptr;
        }));
    add_question(
        "get_args_vector", MT_VECTOR_COLLECTION,
        [](auto& maps, const auto& name, auto& to) { return maps.get_args_vector(map_name, name, to.sets); },
        in_item<MT_VECTOR_COLLECTION>([](const auto& table, const auto* rows, answer& to) {
            to.sets.clear();
            if (rows == nullptr) return false;
            to.sets.reserve(rows->size());
            for (const auto& values : *rows) fill(to.sets.emplace_back(), table.schema, values);
            return true;
        }));
    static const std::string key = "text";
    add_question(
        "get_attrib", MT_COLLECTION,
        [](auto& maps, const auto& name, auto& to) { return maps.get_attrib(map_name, name, key, to.value); },
        in_item<MT_COLLECTION>([](const auto& table, const auto* values, answer& to) {
            if (values == nullptr) return false;
            const auto place = std::find(table.schema.begin(), table.schema.end(), key);
            if (place == table.schema.end()) return false;
            to.value = (*values)[static_cast<std::size_t>(place - table.schema.begin())];
            return true;
        }));
    add_question(
        "has_item", MT_COLLECTION, [](auto& maps, const auto& name, auto&) { return maps.has_item(map_name, name); },
        in_item<MT_COLLECTION>([](auto&, const auto* values, auto&) { return values != nullptr; }));
    add_question(
        "has_key", MT_COLLECTION, [](auto& maps, const auto& name, auto&) { return maps.has_key(map_name, name); },
        [](auto& host, const auto& name, auto&) {
            const auto* const table = find(std::get<MT_COLLECTION>(host), map_name);
            return table != nullptr &&
                   std::find(table->schema.begin(), table->schema.end(), name) != table->schema.end();
        },
        {"name", "symbol", "text", "number", "unit"}, {"colour"});
    add_question(
        "type", MT_SIMPLE, [](auto& maps, const auto& name, auto&) { return maps.type(name) == MT_SIMPLE; },
        [](auto& host, const auto& name, auto&) {
            return std::apply([&](const auto&... maps) { return (... || (find(maps, name) != nullptr)); }, host);
        },
        {map_name}, {"tables"});
}

void register_copies()
{
    for (const std::size_t items : {10U, 1000U, 100000U, 1000000U}) {
        const std::string end = "/" + std::to_string(items) + "/";
        benchmark::RegisterBenchmark(("copy/collection" + end + library_name).c_str(),
                                     [=](auto& state) { copy_all(state, tables_of(MT_COLLECTION, items).library); });
        benchmark::RegisterBenchmark(("copy/table" + end + library_name).c_str(), [=](auto& state) {
            copy_all(state, simple_map(tables_of(MT_SIMPLE, items).library, map_name));
        });
        if (items > 100000) continue;  // a host's copies are only to show how they grow
        benchmark::RegisterBenchmark(("copy/collection" + end + "host").c_str(),
                                     [=](auto& state) { copy_all(state, tables_of(MT_COLLECTION, items).host); });
        benchmark::RegisterBenchmark(("copy/table" + end + "host").c_str(), [=](auto& state) {
            copy_all(state, std::get<MT_SIMPLE>(tables_of(MT_SIMPLE, items).host).at(map_name).items);
        });
    }
}

}  // namespace bench
