// Checks that a report agrees with the load that it explains.
#pragma once

#include <algorithm>
#include <array>
#include <set>
#include <string>

#include "data_mapper/load_report.h"
#include "load_model.h"
#include "memory_file.h"

namespace check_agreement {

using namespace data_mapper4;

// The rules that load does not notice, although a file breaks them.
inline bool is_unnoticed(const std::string& rule)
{
    const std::set<std::string> rules = {"ignored-text",       "unclosed-element", "map-inside-map",
                                         "include-inside-map", "nested-maps",      "nameless-map"};
    return rules.count(rule) != 0;
}

// The rules about the file that is included, and not the one that includes it.
inline bool is_about_include(const std::string& rule)
{
    return rule == "missing-file" || rule == "include-cycle" || rule == "included-twice";
}

inline bool has_error(const load_report& report, const std::string& file, map_error_t::result_type code)
{
    return std::any_of(report.findings().begin(), report.findings().end(), [&](const finding& each) {
        return each.level == severity::error && each.where.file == file && each.code == code;
    });
}

inline bool has_rule(const load_report& report, const std::string& rule)
{
    return std::any_of(report.findings().begin(), report.findings().end(),
                       [&](const finding& each) { return each.rule == rule; });
}

// What the files would load if nothing were wrong.
struct content
{
    std::size_t items = 0;
    std::size_t maps = 0;
};

inline content content_of(const load_report& report, const load_model::collection::files& files)
{
    content all;
    for (const checked_file& file : report.files()) {
        const std::string path = std::filesystem::path(file.path).lexically_normal().string();
        for (const auto& node : files.at(path).nodes) {
            const bool is_start = node.status != xml_stream_parser::no_error;
            const bool is_map = node.tag.size() >= 3 && node.tag.compare(node.tag.size() - 3, 3, "map") == 0;
            if (node.tag == "item" && !node.closing) ++all.items;
            if (is_map && is_start) ++all.maps;
        }
    }
    return all;
}

// A vector collection map drops items that are faulty, and goes on.
inline bool may_drop_items(const expat_nodes::reading& file)
{
    return std::any_of(file.nodes.begin(), file.nodes.end(),
                       [](const auto& node) { return node.tag == "vector_collection_map"; });
}

inline void check(const std::filesystem::path& master, const load_model::collection::files& files)
{
    check_options options;
    options.max_files = 2000;
    options.max_findings = 1000000;
    const load_report report = check_maps(master, options);
    if (!report.is_complete()) return;
    map_collection maps;
    map_error_t result = maps.load(load_path(master));
    require(result.type() == report.result().type() && result.line() == report.result().line());
    require(maps.maps().size() == report.maps().size());
    std::size_t items = 0;
    for (const checked_map& map : report.maps()) {
        require(maps.type(map.name) == map.kind && maps.items(map.name).size() == map.items);
        require(map.declared.line != 0);
        items += map.items;
    }

    // Whatever load notices is an error in the same file, with the same code.
    std::map<std::string, int> readings;
    for (const checked_file& file : report.files()) ++readings[file.path];
    const bool is_read_again = has_rule(report, "include-cycle") || has_rule(report, "included-twice");
    for (checked_file file : report.files()) {
        const map_error_t::result_type code = file.result.type();
        const bool is_again = readings[file.path] > 1 && is_read_again;
        require(code == map_error_t::no_error || is_again || has_error(report, file.path, code));
    }
    const content all = content_of(report, files);
    require(report.errors() != 0 || (items == all.items && report.maps().size() == all.maps));

    // Where load notices nothing, there is no error, except of the rules that it does not notice. It reads nothing after a
    // second <maps>.
    for (checked_file file : report.files()) {
        const std::string path = std::filesystem::path(file.path).lexically_normal().string();
        const bool may_drop = may_drop_items(files.at(path));
        const bool is_clean = file.is_loaded && file.result.type() == map_error_t::no_error && readings[file.path] == 1;
        for (const finding& each : report.findings()) {
            if (!is_clean || may_drop || each.level == severity::warning || each.where.file != file.path) continue;
            require(is_unnoticed(each.rule) || is_about_include(each.rule));
            if (each.rule == "nested-maps") break;
        }
    }
    require(!report.text(true).empty() == !report.findings().empty());
    const load_report again = load_maps(maps, master, options);
    require(again.errors() == report.errors() && maps.maps().size() == report.maps().size());
}

}  // namespace check_agreement
