#include "data_mapper/item_batch.h"

namespace data_mapper4 {

namespace {

std::size_t common_size(std::string_view a, std::string_view b)
{
    const std::size_t most = std::min(a.size(), b.size());
    return static_cast<std::size_t>(std::mismatch(a.begin(), a.begin() + most, b.begin()).first - a.begin());
}

// The first bytes as a number whose order is theirs; zeros stand for those that are missing.
std::uint64_t order_of(std::string_view key)
{
    std::uint64_t order = 0;
    for (std::size_t i = 0; i < sizeof order; ++i) {
        order = order << 8 | (i < key.size() ? static_cast<unsigned char>(key[i]) : 0U);
    }
    return order;
}

}  // namespace

void sort_places(std::vector<item_place>& places)
{
    if (places.empty()) return;
    // Keys of one map often begin alike; what they share orders nothing.
    std::string_view shared = places.front().key();
    for (const item_place& place : places) shared = shared.substr(0, common_size(shared, place.key()));
    for (item_place& place : places) place.order = order_of(place.key().substr(shared.size()));
    std::sort(places.begin(), places.end(), [](const item_place& a, const item_place& b) {
        return a.order != b.order ? a.order < b.order : a.key() < b.key();
    });
}

}  // namespace data_mapper4
