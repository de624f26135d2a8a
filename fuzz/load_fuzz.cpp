// Whole loads: the input determines the content of four files of maps, which may include each other. A collection that
// loads them, loads them again, is copied and assigned must return the same as the model in load_model.h.
#include "check_agreement.h"
#include "load_model.h"
#include "map_author.h"
#include "memory_file.h"

namespace {

using data_mapper4::map_collection;
using data_mapper4::map_error_t;
using data_mapper4::map_type;
using load_model::row;
using std::string;
using texts = std::vector<string>;

// Larger tables are only asked the queries for their own kind.
constexpr std::size_t few_items = 20;

load_model::collection::files write_files(std::string_view steps)
{
    load_model::collection::files files;
    const map_author::documents documents = map_author::author().write(steps);
    for (std::size_t i = 0; i < documents.size(); ++i) {
        write_memory_file(std::stoi(map_author::file_names[i]), documents[i]);
        files["/proc/self/fd/" + map_author::file_names[i]] = expat_nodes::read(documents[i]);
    }
    return files;
}

// Checks one query for an item, which tables of one kind answer. After a miss, the output must be unchanged, except
// that a container is emptied if only the item is missing.
template <typename Output, typename Query>
void check_query(const load_model::table& table, map_type kind, bool has_item, const Output& expected,
                 const Output& before, Query query)
{
    const bool is_kind = table.kind == kind;
    if (!is_kind && table.items.size() > few_items) return;
    Output output = before;
    require(query(output) == (is_kind && has_item));
    const Output missing = std::is_same_v<Output, string> ? before : Output();
    require(output == (!is_kind ? before : has_item ? expected : missing));
}

// All queries for an item that the map may have.
void check_item(map_collection& maps, const string& map, const load_model::table& table, const string& item)
{
    const auto found = table.items.find(item);
    const bool has = found != table.items.end();
    const std::vector<row> rows = has ? found->second : std::vector<row>();
    const row first = rows.empty() ? row{{"name", ""}} : rows[0];
    texts names;
    for (const row& each : rows) names.push_back(each.at("name"));

    require(maps.has_item(map, item) == has);
    check_query<string>(table, data_mapper4::MT_SIMPLE, has, first.at("name"), "before",
                        [&](auto& output) { return maps.get_arg(map, item, output); });
    check_query<texts>(table, data_mapper4::MT_VECTOR, has, names, {"before"},
                       [&](auto& output) { return maps.get_args(map, item, output); });
    check_query<row>(table, data_mapper4::MT_COLLECTION, has, first, {{"before", ""}},
                     [&](auto& output) { return maps.get_attribs(map, item, output); });
    for (const string& name : map_author::attributes) {
        const bool has_value = first.count(name) != 0;
        check_query<string>(table, data_mapper4::MT_COLLECTION, has_value, has_value ? first.at(name) : "", "before",
                            [&](auto& output) { return maps.get_attrib(map, item, name, output); });
    }
    check_query<std::vector<row>>(table, data_mapper4::MT_VECTOR_COLLECTION, has, rows, std::vector<row>(7),
                                  [&](auto& output) { return maps.get_args_vector(map, item, output); });
}

// Checks that the table has the model's items and attribute names, and none of the other names.
void check_table(map_collection& maps, const string& name, const load_model::table& table)
{
    texts items;
    for (const auto& item : table.items) items.push_back(item.first);
    require(maps.items(name) == items && maps.keys(name) == table.schema);
    if (!items.empty()) items.push_back(items.back() + "0");
    items.insert(items.end(), map_author::item_names.begin(), map_author::item_names.end());
    for (const string& item : items) check_item(maps, name, table, item);
    for (const string& key : {string("name"), map_author::attributes[0], map_author::attributes[3]}) {
        const bool is_known = std::count(table.schema.begin(), table.schema.end(), key) != 0;
        require(maps.has_key(name, key) == (is_known && !table.items.empty()));
    }
}

void check(map_collection& maps, const load_model::collection& model)
{
    std::map<string, map_type> kinds;
    for (const auto& [name, table] : model.maps) kinds[name] = table.kind;
    require(maps.maps() == kinds);
    for (const auto& [name, table] : model.maps) {
        require(maps.is_loaded(name) && maps.type(name) == table.kind);
        check_table(maps, name, table);
    }
    const load_model::table none{data_mapper4::MT_UNKNOWN};
    require(!maps.is_loaded("none") && maps.type("none") == none.kind);
    check_table(maps, "none", none);
}

// Returns false if the includes multiply beyond what the model follows.
bool load(map_collection& maps, load_model::collection& model, const string& path)
{
    model.load(path);
    if (model.files_read > load_model::collection::most_files) return false;
    map_error_t result = maps.load(std::wstring(path.begin(), path.end()));
    require(result.type() == model.result && result.line() == model.line);
    check(maps, model);
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0) return 0;
    const load_model::collection::files files = write_files({reinterpret_cast<const char*>(data) + 1, size - 1});
    const string folder = map_author::folders[2];
    const string first = (data[0] % 8 == 0 ? "/proc/self/fd/" : folder) + map_author::file_names[0];
    check_agreement::check("/proc/self/fd/" + map_author::file_names[0], files);
    const string second = folder + map_author::file_names[data[0] / 8 % 4];

    map_collection maps;
    load_model::collection model(files);
    if (!load(maps, model, first)) return 0;
    map_collection copy(maps);
    load_model::collection model_of_copy = model;
    check(copy, model_of_copy);
    if (!load(copy, model_of_copy, second)) return 0;
    check(maps, model);
    maps = copy;
    model = model_of_copy;
    if (load(copy, model_of_copy, first)) check(maps, model);
    return 0;
}
