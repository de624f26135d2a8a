// What the commands print as JSON. docs/tool.md describes it.
#pragma once

#include <nlohmann/json.hpp>

#include "data_mapper/load_report.h"
#include "tools/item_values.h"

namespace data_mapper4::tool {

// Of the output of check, list and dump. It changes when a key is removed or means something else.
constexpr int json_version = 1;

using nlohmann::json;          // keys in the order of their names
using nlohmann::ordered_json;  // keys in the order in which they were added

// A master file, with its path as it was given.
ordered_json json_of(const load_report& report, const std::filesystem::path& file);
ordered_json json_of(const checked_map& map);

// A text, a list of texts, an attribute set or a list of those.
json json_of(const item_values& values);

// The value without white space.
ustring8 one_line(const json& value);

void print(const json& value);
void print(const ordered_json& value);

}  // namespace data_mapper4::tool
