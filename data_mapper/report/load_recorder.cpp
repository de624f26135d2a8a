#include "data_mapper/report/load_recorder.h"

#include "data_mapper/map_stores.h"
#include "platform/parser_elements.h"

namespace data_mapper4 {

namespace {

template <class key>
std::size_t number_in(const std::map<key, std::size_t>& numbers, const key& wanted)
{
    const auto found = numbers.find(wanted);
    return found == numbers.end() ? no_number : found->second;
}

}  // namespace

void load_recorder::load(map_collection& maps, const std::wstring& path)
{
    load_followed(maps, path, *this);
    // A file is always after the one that includes it.
    for (std::size_t i = m_readings.size(); i-- > 0;) {
        const reading& each = m_readings[i];
        if (each.has_duplicate && each.parent != no_number) m_readings[each.parent].has_duplicate = true;
    }
}

const recorded_map* load_recorder::find_map(const ustring8& name) const
{
    const auto found = m_by_name.find(name);
    return found == m_by_name.end() ? nullptr : &found->second;
}

std::size_t load_recorder::included_at(std::size_t reading, std::size_t position) const
{
    return number_in(m_included, {reading, position});
}

std::size_t load_recorder::first_of(std::size_t file) const
{
    return number_in(m_first, file);
}

std::size_t load_recorder::item_count(const map_collection& maps, const ustring8& name)
{
    return map_collection::stores::item_count(maps, name);
}

void load_recorder::swap(map_collection& a, map_collection& b) noexcept
{
    a.m_file.swap(b.m_file);
    a.m_base_dir.swap(b.m_base_dir);
    std::swap(a.m_error, b.m_error);
    a.m_maps.swap(b.m_maps);
    a.m_simple_maps.swap(b.m_simple_maps);
    a.m_collection_maps.swap(b.m_collection_maps);
    a.m_vector_maps.swap(b.m_vector_maps);
    a.m_vector_collection_maps.swap(b.m_vector_collection_maps);
    std::swap(a.m_is_torn, b.m_is_torn);
}

bool load_recorder::on_open(const std::wstring& path, std::size_t include)
{
    const std::size_t number = m_readings.size();
    const std::size_t parent = m_chain.empty() ? no_number : m_chain.back();
    const element_place place = m_chain.empty() ? element_place() : element_place{file_of(m_readings[parent]), include};
    m_readings.push_back({parent, include, m_files.open(path, place)});
    m_included.emplace(std::make_pair(parent, include), number);
    m_chain.push_back(number);
    const std::size_t file = file_of(m_readings.back());
    return file == no_number ? !m_files.limit() : m_files.take_values(file);
}

std::unique_ptr<NUVEK_2_18::parser::xml_stream_parser> load_recorder::make_parser(const std::wstring& /*path*/)
{
    const std::size_t number = m_chain.back();
    const std::size_t file = file_of(m_readings[number]);
    m_readings[number].is_read = true;
    if (file != no_number) m_first.emplace(file, number);
    return NUVEK_2_18::parser::make_parser(file == no_number ? nullptr : m_files.document(file));
}

void load_recorder::on_map(std::size_t position, const ustring8& name)
{
    m_maps.push_back(&m_by_name.emplace(name, recorded_map{m_chain.back(), position, m_maps.size()}).first->second);
}

void load_recorder::on_close(const map_error_t& result, std::size_t position)
{
    reading& closed = m_readings[m_chain.back()];
    closed.result = result;
    closed.end = position;
    closed.has_duplicate = result.type() == map_error_t::duplicate_map;
    m_chain.pop_back();
}

}  // namespace data_mapper4
