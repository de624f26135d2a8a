#include "data_mapper/report/map_names.h"

namespace data_mapper4 {

std::optional<text_part> map_names::add(const ustring8& name, const declaration& declared)
{
    const auto known = m_first.find(name);
    const bool is_known = known != m_first.end();
    if (!is_known && declared.has_content) m_first.emplace(name, declared.name);
    const reading* const load = declared.reading == no_number ? nullptr : &m_load.readings()[declared.reading];
    if (load == nullptr || declared.position >= load->end) {
        return is_known ? std::optional<text_part>(known->second) : std::nullopt;
    }
    const bool is_refused = load->result.type() == map_error_t::duplicate_map && declared.next == load->end;
    const recorded_map* const loaded = is_refused ? m_load.find_map(name) : nullptr;
    if (loaded == nullptr) return std::nullopt;
    // The file itself, read again: a cycle of includes, which is reported as such.
    const text_part first = name_part(*loaded);
    const bool is_same = first.file == declared.name.file && first.begin == declared.name.begin;
    return is_same ? std::nullopt : std::optional<text_part>(first);
}

text_part map_names::name_part(const recorded_map& map) const
{
    const std::size_t file = file_of(m_load.readings()[map.reading]);
    const auto& document = *m_files.document(file);
    NUVEK_2_18::parser::xml_element element;
    document.index.read(map.position, element);
    const std::string_view name = element.attributes.front().value.raw;
    const auto begin = static_cast<std::size_t>(name.data() - document.text.view().data());
    return {file, begin, begin + name.size()};
}

}  // namespace data_mapper4
