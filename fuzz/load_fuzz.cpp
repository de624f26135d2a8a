// Whole loads: the bytes choose what stands in four files of maps, which may include each other. Loaded, loaded again,
// copied and assigned, a collection must answer as the model of load_model.h does.
#include "load_model.h"
#include "map_author.h"
#include "memory_file.h"

namespace {

using data_mapper4::map_collection;
using data_mapper4::map_error_t;
using data_mapper4::map_type;
using std::string;
using attribs = std::map<string, string>;

constexpr int first_number = 200;
const string folder = "\\proc\\self\\fd\\";

std::array<expat_nodes::reading, map_author::file_count> readings;

const expat_nodes::reading* find(const string& path)
{
    string rest = path;
    std::replace(rest.begin(), rest.end(), '/', '\\');
    if (rest.rfind(folder, 0) != 0) return nullptr;
    rest.erase(0, folder.size());
    while (rest.rfind("..\\fd\\", 0) == 0) rest.erase(0, 6);
    for (std::size_t i = 0; i < readings.size(); ++i) {
        if (rest == std::to_string(first_number + static_cast<int>(i))) return &readings[i];
    }
    return nullptr;
}

void write_files(std::string_view steps)
{
    static const std::array<memory_file, map_author::file_count> files = {
        memory_file(first_number), memory_file(first_number + 1), memory_file(first_number + 2),
        memory_file(first_number + 3)};
    const map_author::documents documents = map_author::author(folder, first_number).write(steps);
    for (std::size_t i = 0; i < files.size(); ++i) {
        files[i].write(documents[i]);
        readings[i] = expat_nodes::reader().read(documents[i]);
    }
}

attribs attribs_of(const load_model::table& table, const load_model::row& row)
{
    attribs set;
    for (std::size_t i = 0; i < table.schema.size(); ++i) set[table.schema[i]] = row[i];
    return set;
}

// Every query for an item: the answer is the table's, and an output that gets none is as documented.
void check_item(map_collection& maps, const string& map, const load_model::table& table, const string& item)
{
    const auto found = table.items.find(item);
    const bool has = found != table.items.end();
    static const std::vector<load_model::row> no_rows;
    const std::vector<load_model::row>& rows = has ? found->second : no_rows;
    require(maps.has_item(map, item) == has);

    const bool is_simple = table.kind == data_mapper4::MT_SIMPLE;
    string text = "before";
    require(maps.get_arg(map, item, text) == (is_simple && has));
    require(text == (!is_simple || !has ? "before" : rows.empty() ? "" : rows[0][0]));

    const bool is_vector = table.kind == data_mapper4::MT_VECTOR;
    std::vector<string> args = {"before"};
    std::vector<string> expected_args;
    for (const load_model::row& row : rows) expected_args.push_back(row[0]);
    require(maps.get_args(map, item, args) == (is_vector && has));
    require(args == (is_vector ? expected_args : std::vector<string>{"before"}));

    const bool is_collection = table.kind == data_mapper4::MT_COLLECTION;
    attribs set = {{"before", ""}};
    require(maps.get_attribs(map, item, set) == (is_collection && has));
    require(set == (!is_collection ? attribs{{"before", ""}} : has ? attribs_of(table, rows[0]) : attribs()));
    for (const string& name : map_author::attributes) {
        const auto value = set.find(name);
        text = "before";
        require(maps.get_attrib(map, item, name, text) == (value != set.end()));
        require(text == (value == set.end() ? "before" : value->second));
    }

    const bool is_vector_collection = table.kind == data_mapper4::MT_VECTOR_COLLECTION;
    std::vector<attribs> sets(7);
    std::vector<attribs> expected_sets;
    for (const load_model::row& row : rows) expected_sets.push_back(attribs_of(table, row));
    require(maps.get_args_vector(map, item, sets) == (is_vector_collection && has));
    require(sets == (is_vector_collection ? expected_sets : std::vector<attribs>(7)));
}

void check(map_collection& maps, const load_model::collection& model)
{
    std::map<string, map_type> kinds;
    for (const auto& [name, table] : model.maps) kinds[name] = table.kind;
    require(maps.maps() == kinds);
    for (const auto& [name, table] : model.maps) {
        require(maps.is_loaded(name) && maps.type(name) == table.kind);
        for (const string& key : {string("name"), map_author::attributes[0], map_author::attributes[3]}) {
            const bool is_known = std::count(table.schema.begin(), table.schema.end(), key) != 0;
            require(maps.has_key(name, key) == (is_known && !table.items.empty()));
        }
        for (const string& item : map_author::item_names) check_item(maps, name, table, item);
    }
    const load_model::table none{data_mapper4::MT_UNKNOWN};
    require(!maps.is_loaded("none") && maps.type("none") == none.kind && !maps.has_key("none", "name"));
    check_item(maps, "none", none, "k");
}

// False when the includes multiply beyond what the model follows.
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
    write_files(text_of(data + 1, size - 1));
    const string first = (data[0] % 8 == 0 ? "/proc/self/fd/" : folder) + std::to_string(first_number);
    const string second = folder + std::to_string(first_number + data[0] / 8 % 4);

    map_collection maps;
    load_model::collection model(find);
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
