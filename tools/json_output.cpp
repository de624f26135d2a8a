#include "tools/json_output.h"

#include <iostream>

#include "data_mapper/map_kind.h"

namespace data_mapper4::tool {

namespace {

ustring8 code_name(map_error_t::result_type code)
{
    map_error_t error;
    error.type(code);
    return map_collection().map_error_as_string(error);
}

// Null if there is no such place, or if it is the file as a whole.
ordered_json point_of(const file_place& place)
{
    if (place.line == 0) return nullptr;
    return {{"file", place.file}, {"line", place.line}, {"column", place.column}};
}

ordered_json range_of(const file_place& place)
{
    return {{"file", place.file},
            {"line", place.line},
            {"column", place.column},
            {"end_line", place.end_line},
            {"end_column", place.end_column}};
}

template <class container, class function>
ordered_json list_of(const container& elements, function json_of_element)
{
    ordered_json list = ordered_json::array();
    for (const auto& element : elements) list.push_back(json_of_element(element));
    return list;
}

ordered_json related_json(const related_place& related)
{
    return {{"message", related.message}, {"where", range_of(related.where)}};
}

ordered_json source_json(const finding& found)
{
    if (found.where.line == 0) return nullptr;
    return {{"text", found.source}, {"column", found.source_column}};
}

ordered_json finding_json(const finding& found)
{
    return {{"severity", found.level == severity::error ? "error" : "warning"},
            {"rule", found.rule},
            {"code", code_name(found.code)},
            {"message", found.message},
            {"hint", found.hint.empty() ? ordered_json() : ordered_json(found.hint)},
            {"where", range_of(found.where)},
            {"source", source_json(found)},
            {"related", list_of(found.related, related_json)},
            {"included_by", list_of(found.included_by, point_of)}};
}

ordered_json file_json(const checked_file& file)
{
    map_error_t result = file.result;
    return {{"file", file.path},
            {"ended", file.is_loaded ? ordered_json(code_name(result.type())) : ordered_json()},
            {"line", file.is_loaded ? ordered_json(result.line()) : ordered_json()},
            {"included_at", point_of(file.included_at)}};
}

template <class value_type>
void print_line(const value_type& value)
{
    constexpr int indentation = 2;
    std::cout << value.dump(indentation, ' ', false, value_type::error_handler_t::replace) << '\n';
}

}  // namespace

ordered_json json_of(const load_report& report, const std::filesystem::path& file)
{
    map_error_t result = report.result();
    return {{"file", file.u8string()},
            {"complete", report.is_complete()},
            {"left_out", report.errors() + report.warnings() - report.findings().size()},
            {"load", {{"code", code_name(result.type())}, {"line", result.line()}}},
            {"files", list_of(report.files(), file_json)},
            {"maps", list_of(report.maps(), [](const checked_map& map) { return json_of(map); })},
            {"findings", list_of(report.findings(), finding_json)}};
}

ordered_json json_of(const checked_map& map)
{
    return {
        {"name", map.name}, {"kind", text_of(map.kind)}, {"items", map.items}, {"declared", point_of(map.declared)}};
}

json json_of(const item_values& values)
{
    if (values.is_list) return values.sets.empty() ? json(values.texts) : json(values.sets);
    return values.sets.empty() ? json(values.texts.front()) : json(values.sets.front());
}

ustring8 one_line(const json& value)
{
    return value.dump(-1, ' ', false, json::error_handler_t::replace);
}

void print(const json& value)
{
    print_line(value);
}

void print(const ordered_json& value)
{
    print_line(value);
}

}  // namespace data_mapper4::tool
