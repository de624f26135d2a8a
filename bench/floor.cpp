#include "contender.h"

namespace bench {

namespace {

std::string own(std::string_view text)
{
    return std::string(text);
}

row<std::string> own(const row<std::string_view>& values)
{
    return {values.begin(), values.end()};
}

std::vector<row<std::string>> own(const std::vector<row<std::string_view>>& rows)
{
    std::vector<row<std::string>> owned;
    owned.reserve(rows.size());
    for (const auto& values : rows) owned.emplace_back(values.begin(), values.end());
    return owned;
}

// Returns a function that makes a table like this one. Its items are in memory in the order of their names.
template <map_type kind>
auto filler_of(std::string_view name, const host_table<kind, std::string_view>& like)
{
    using item = std::pair<std::string_view, content<kind, std::string_view>>;
    return [=, items = std::vector<item>(like.items.begin(), like.items.end())](host_tables& tables) {
        auto& table = std::get<kind>(tables)[own(name)];
        table.schema = own(like.schema);
        for (const auto& [key, value] : items) table.items.emplace_hint(table.items.end(), key, own(value));
    };
}

}  // namespace

std::function<bool(host_tables&)> floor_of(const std::string& path)
{
    const auto text = std::make_shared<file_text>(read_file(path));
    basic_tables<std::string_view> tables;
    basic_filler<std::string_view> filler(tables);
    require(read_views(*text, filler) && filler.is_sound() && filler.includes().empty(), "cannot split " + path);
    std::vector<std::function<void(host_tables&)>> fillers;
    const auto add_fillers = [&](const auto& maps) {
        for (const auto& [name, table] : maps) fillers.emplace_back(filler_of(name, table));
    };
    std::apply([&](const auto&... maps) { (add_fillers(maps), ...); }, tables);
    return [=, units = NUVEK_2_18::strings::utf8_to_utf16(path)](host_tables& to) {
        static_cast<void>(text);  // the fillers' views point into it
        xml_stream_parser parser(units, xml_stream_parser::header_optional);
        if (parser.parse() != xml_stream_parser::end_of_file) return false;
        for (const auto& fill : fillers) fill(to);
        return true;
    };
}

}  // namespace bench
