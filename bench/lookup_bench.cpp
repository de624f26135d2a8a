// Lookups beside those that a host would write: find the map, find the item, copy what it holds. And copies of whole
// collections and tables, their destruction included.
#include <algorithm>
#include <random>

#include "benches.h"
#include "contender.h"
#include "documents.h"

namespace bench {

namespace {

using data_mapper4::map_collection;
using data_mapper4::map_type;
using attribute_set = std::map<std::string, std::string>;

const std::string map_name = "table";

// Outputs, used again from one question to the next.
struct answer
{
    std::string value;
    std::vector<std::string> values;
    attribute_set attribs;
    std::vector<attribute_set> sets;
};

// One map, as the library and as a host hold it, and names to ask for.
struct table_pair
{
    table_pair(map_type type, std::size_t items)
    {
        const std::string path = table_document(type, items);
        if (!load(path, library) || !load(pugixml, path, host)) stop("cannot load " + path);
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
    std::vector<std::string> present;
    std::vector<std::string> missing;
};

table_pair& tables_of(map_type type, std::size_t items)
{
    static std::map<std::pair<map_type, std::size_t>, table_pair> known;
    return known.try_emplace({type, items}, type, items).first->second;
}

template <class tables, class question>
void ask_all(benchmark::State& state, tables& of, const std::vector<std::string>& names, bool expected, question ask)
{
    answer to;
    if (ask(of, names.front(), to) != expected) stop("a lookup gives the wrong answer");
    auto name = names.begin();
    for (auto _ : state) {
        benchmark::DoNotOptimize(ask(of, *name, to));
        if (++name == names.end()) name = names.begin();
    }
}

// What to ask for where it is not the items.
struct fixed_names
{
    std::vector<std::string> present;
    std::vector<std::string> missing;
};

// Rows such as lookup/get_arg/hit/1000/host. The library and the host are asked for the same.
template <class library_question, class host_question>
void add_question(const std::string& getter, map_type type, library_question ask_library, host_question ask_host,
                  const fixed_names& fixed = {})
{
    const auto names_of = [fixed](const table_pair& of, bool is_hit) -> const names& {
        if (!fixed.present.empty()) return is_hit ? fixed.present : fixed.missing;
        return is_hit ? of.present : of.missing;
    };
    for (const bool is_hit : {true, false}) {
        for (const std::size_t items : {10U, 1000U, 100000U, 1000000U}) {
            const std::string rows = "lookup/" + getter + (is_hit ? "/hit/" : "/miss/") + std::to_string(items) + "/";
            add_row(rows + library_name, benchmark::kNanosecond, [=](auto& state) {
                table_pair& of = tables_of(type, items);
                ask_all(state, of.library, names_of(of, is_hit), is_hit, ask_library);
            });
            add_row(rows + "host", benchmark::kNanosecond, [=](auto& state) {
                table_pair& of = tables_of(type, items);
                ask_all(state, std::as_const(of.host), names_of(of, is_hit), is_hit, ask_host);
            });
        }
    }
}

template <class table>
const table* find(const std::map<std::string, table>& tables, const std::string& name)
{
    const auto found = tables.find(name);
    return found == tables.end() ? nullptr : &found->second;
}

bool host_get_arg(const host_tables& host, const std::string& name, std::string& value)
{
    const simple_table* const table = find(host.simple, map_name);
    const std::string* const text = table == nullptr ? nullptr : find(*table, name);
    if (text == nullptr) return false;
    value = *text;
    return true;
}

bool host_get_args(const host_tables& host, const std::string& name, std::vector<std::string>& values)
{
    const vector_table* const table = find(host.vector, map_name);
    if (table == nullptr) return false;
    const std::vector<std::string>* const texts = find(*table, name);
    if (texts == nullptr) {
        values.clear();
        return false;
    }
    values = *texts;
    return true;
}

void fill(attribute_set& attribs, const names& schema, const row& values)
{
    for (std::size_t i = 0; i < schema.size(); ++i) attribs.emplace(schema[i], values[i]);
}

bool host_get_attribs(const host_tables& host, const std::string& name, attribute_set& attribs)
{
    const collection_table* const table = find(host.collection, map_name);
    if (table == nullptr) return false;
    attribs.clear();
    const row* const values = find(table->items, name);
    if (values != nullptr) fill(attribs, table->schema, *values);
    return values != nullptr;
}

bool host_get_attrib(const host_tables& host, const std::string& name, const std::string& key, std::string& value)
{
    const collection_table* const table = find(host.collection, map_name);
    const row* const values = table == nullptr ? nullptr : find(table->items, name);
    if (values == nullptr) return false;
    const auto place = std::find(table->schema.begin(), table->schema.end(), key);
    if (place == table->schema.end()) return false;
    value = (*values)[static_cast<std::size_t>(place - table->schema.begin())];
    return true;
}

bool host_get_args_vector(const host_tables& host, const std::string& name, std::vector<attribute_set>& sets)
{
    const vector_collection_table* const table = find(host.vector_collection, map_name);
    if (table == nullptr) return false;
    sets.clear();
    const std::vector<row>* const rows = find(table->items, name);
    if (rows == nullptr) return false;
    sets.reserve(rows->size());
    for (const row& values : *rows) fill(sets.emplace_back(), table->schema, values);
    return true;
}

bool host_has_item(const host_tables& host, const std::string& name)
{
    const collection_table* const table = find(host.collection, map_name);
    return table != nullptr && find(table->items, name) != nullptr;
}

bool host_has_key(const host_tables& host, const std::string& key)
{
    const collection_table* const table = find(host.collection, map_name);
    return table != nullptr && std::find(table->schema.begin(), table->schema.end(), key) != table->schema.end();
}

map_type host_type(const host_tables& host, const std::string& name)
{
    if (find(host.simple, name) != nullptr) return data_mapper4::MT_SIMPLE;
    if (find(host.vector, name) != nullptr) return data_mapper4::MT_VECTOR;
    if (find(host.collection, name) != nullptr) return data_mapper4::MT_COLLECTION;
    if (find(host.vector_collection, name) != nullptr) return data_mapper4::MT_VECTOR_COLLECTION;
    return data_mapper4::MT_UNKNOWN;
}

struct loaded_table : data_mapper4::map_t
{
    explicit loaded_table(const std::string& path)
    {
        using parser_type = data_mapper4::xml_stream_parser;
        parser_type parser(NUVEK_2_18::strings::utf8_to_utf16(path), parser_type::header_optional);
        parser.parse();
        parser.node_queue_pop();  // maps
        parser.node_queue_pop();  // map
        if (load(map_name, parser).type() != data_mapper4::map_error_t::no_error || empty())
            stop("cannot load " + path);
    }
};

const data_mapper4::map_t& table_of(std::size_t items)
{
    static std::map<std::size_t, loaded_table> known;
    return known.try_emplace(items, table_document(data_mapper4::MT_SIMPLE, items)).first->second;
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
        "get_arg", data_mapper4::MT_SIMPLE,
        [](auto& maps, const auto& name, auto& to) { return maps.get_arg(map_name, name, to.value); },
        [](auto& host, const auto& name, auto& to) { return host_get_arg(host, name, to.value); });
    add_question(
        "get_args", data_mapper4::MT_VECTOR,
        [](auto& maps, const auto& name, auto& to) { return maps.get_args(map_name, name, to.values); },
        [](auto& host, const auto& name, auto& to) { return host_get_args(host, name, to.values); });
    add_question(
        "get_attribs", data_mapper4::MT_COLLECTION,
        [](auto& maps, const auto& name, auto& to) { return maps.get_attribs(map_name, name, to.attribs); },
        [](auto& host, const auto& name, auto& to) { return host_get_attribs(host, name, to.attribs); });
    static const std::string key = "text";
    add_question(
        "get_attrib", data_mapper4::MT_COLLECTION,
        [](auto& maps, const auto& name, auto& to) { return maps.get_attrib(map_name, name, key, to.value); },
        [](auto& host, const auto& name, auto& to) { return host_get_attrib(host, name, key, to.value); });
    add_question(
        "get_args_vector", data_mapper4::MT_VECTOR_COLLECTION,
        [](auto& maps, const auto& name, auto& to) { return maps.get_args_vector(map_name, name, to.sets); },
        [](auto& host, const auto& name, auto& to) { return host_get_args_vector(host, name, to.sets); });
    add_question(
        "has_item", data_mapper4::MT_COLLECTION,
        [](auto& maps, const auto& name, auto& /*to*/) { return maps.has_item(map_name, name); },
        [](auto& host, const auto& name, auto& /*to*/) { return host_has_item(host, name); });
    add_question(
        "has_key", data_mapper4::MT_COLLECTION,
        [](auto& maps, const auto& name, auto& /*to*/) { return maps.has_key(map_name, name); },
        [](auto& host, const auto& name, auto& /*to*/) { return host_has_key(host, name); },
        {{"name", "symbol", "text", "number", "unit"}, {"colour"}});
    add_question(
        "type", data_mapper4::MT_SIMPLE,
        [](auto& maps, const auto& name, auto& /*to*/) { return maps.type(name) == data_mapper4::MT_SIMPLE; },
        [](auto& host, const auto& name, auto& /*to*/) { return host_type(host, name) == data_mapper4::MT_SIMPLE; },
        {{map_name}, {"tables"}});
}

void register_copies()
{
    for (const std::size_t items : {10U, 1000U, 100000U, 1000000U}) {
        const std::string end = "/" + std::to_string(items) + "/";
        add_row("copy/collection" + end + library_name, benchmark::kNanosecond,
                [=](auto& state) { copy_all(state, tables_of(data_mapper4::MT_COLLECTION, items).library); });
        add_row("copy/table" + end + library_name, benchmark::kNanosecond,
                [=](auto& state) { copy_all(state, table_of(items)); });
        if (items > 100000) continue;  // a host's copies only have to show how they grow
        add_row("copy/collection" + end + "host", benchmark::kNanosecond,
                [=](auto& state) { copy_all(state, tables_of(data_mapper4::MT_COLLECTION, items).host); });
        add_row("copy/table" + end + "host", benchmark::kNanosecond, [=](auto& state) {
            copy_all(state, tables_of(data_mapper4::MT_SIMPLE, items).host.simple.at(map_name));
        });
    }
}

}  // namespace bench
