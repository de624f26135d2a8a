#include "data_mapper/map_view.h"

#include "data_mapper/map_stores.h"

namespace data_mapper4 {

std::size_t map_view::size() const noexcept
{
    return m_items == nullptr ? 0 : m_items->size();
}

std::optional<item_view> map_view::find(std::string_view item) const noexcept
{
    const stored_item found = m_items == nullptr ? stored_item() : m_items->find(item);
    return found ? std::optional(item_view(found, m_kind, m_names)) : std::nullopt;
}

std::string_view map_view::records() const noexcept
{
    return m_items == nullptr ? std::string_view() : m_items->records();
}

std::pair<std::string_view, map_view> map_cursor::read() const noexcept
{
    return {m_at->first, m_maps->view(m_at->first)};
}

map_view map_collection::view(const ustring8& map_name) const noexcept
{
    return stores::visit_table(*this, map_name, [&](const auto& map) {
        const item_store* const items = map.m_items.shared_store();
        return items == nullptr ? map_view() : map_view(*items, stores::kind_of(map), stores::names_of(map));
    });
}

map_list map_collection::views() const noexcept
{
    return {map_cursor(*this, m_maps.begin()), map_cursor(*this, m_maps.end())};
}

}  // namespace data_mapper4
