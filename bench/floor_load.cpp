#include "contender.h"

namespace bench {

namespace {

using data_mapper4::xml_stream_parser;
using views = std::vector<std::string_view>;

void append(views& to, std::string_view text)
{
    to.push_back(text);
}

template <class value>
void append(views& to, const std::vector<value>& values)
{
    for (const value& each : values) append(to, each);
}

// What an item holds, made of its texts.
template <map_type kind>
content<kind, std::string> make(const std::string_view* begin, const std::string_view* end, std::size_t row_size)
{
    if constexpr (kind == MT_SIMPLE) {
        return std::string(*begin);
    } else if constexpr (kind == MT_VECTOR_COLLECTION) {
        std::vector<row<std::string>> rows;
        rows.reserve(begin == end ? 0 : static_cast<std::size_t>(end - begin) / row_size);
        for (; begin != end; begin += row_size) rows.emplace_back(begin, begin + row_size);
        return rows;
    } else {
        return {begin, end};
    }
}

}  // namespace

floor_load::floor_load(const std::string& path)
    : m_path(NUVEK_2_18::strings::utf8_to_utf16(path)), m_text(read_file(path))
{
    basic_tables<std::string_view> tables;
    basic_filler<std::string_view> filler(tables);
    require(read_views(m_text, filler) && filler.is_sound() && filler.includes().empty(), "cannot split " + path);
    sort<MT_SIMPLE>(tables);
    sort<MT_COLLECTION>(tables);
    sort<MT_VECTOR>(tables);
    sort<MT_VECTOR_COLLECTION>(tables);
}

bool floor_load::load(host_tables& tables) const
{
    xml_stream_parser parser(m_path, xml_stream_parser::header_optional);
    if (parser.parse() != xml_stream_parser::end_of_file) return false;
    fill<MT_SIMPLE>(tables);
    fill<MT_COLLECTION>(tables);
    fill<MT_VECTOR>(tables);
    fill<MT_VECTOR_COLLECTION>(tables);
    return true;
}

template <map_type kind>
void floor_load::sort(const basic_tables<std::string_view>& tables)
{
    for (const auto& [name, table] : std::get<kind>(tables)) {
        sorted_map& map = m_maps[kind].emplace_back(sorted_map{name, table.schema, {}, {}});
        for (const auto& [item, content] : table.items) {
            append(map.texts, content);
            map.items.emplace_back(item, map.texts.size());
        }
    }
}

template <map_type kind>
void floor_load::fill(host_tables& tables) const
{
    for (const sorted_map& map : m_maps[kind]) {
        auto& table = std::get<kind>(tables)[std::string(map.name)];
        table.schema.assign(map.schema.begin(), map.schema.end());
        const std::string_view* text = map.texts.data();
        for (const auto& [name, texts] : map.items) {
            const std::string_view* const end = map.texts.data() + texts;
            table.items.emplace_hint(table.items.end(), name, make<kind>(text, end, map.schema.size()));
            text = end;
        }
    }
}

}  // namespace bench
