#include "data_mapper/item_batch.h"

#include <algorithm>

namespace data_mapper4 {

namespace {

using iterator = std::vector<item_batch::sorted_item>::iterator;

// Items whose keys begin with the same bytes.
struct run
{
    iterator begin;
    iterator end;
    std::size_t shared;  // the number of those bytes
};

// An order number holds the next seven bytes of a key and, in its lowest byte, how many bytes the key still had, at
// most eight. Among keys that are equal up to there, the numbers are in the order of the keys; two are equal only if
// both keys end after the same bytes or both go on.
constexpr std::size_t part_size = 7;

std::uint64_t order_of(std::string_view rest)
{
    constexpr std::size_t size = part_size + 1;
    constexpr std::uint64_t count_mask = 0xFF;
    std::uint64_t bytes = 0;
    if (rest.size() >= size) {
        // Compiled to a single load.
        for (std::size_t i = 0; i < size; ++i) bytes = bytes << 8 | static_cast<unsigned char>(rest[i]);
        return (bytes & ~count_mask) | size;
    }
    for (const char byte : rest) bytes = bytes << 8 | static_cast<unsigned char>(byte);
    return bytes << 8 * (size - rest.size() - 1) << 8 | rest.size();
}

bool goes_on(std::uint64_t order)
{
    return (order & 0xFF) > part_size;
}

}  // namespace

std::size_t item_batch::value_count(std::size_t item) const
{
    const std::size_t end = item + 1 == items.size() ? values.size() : items[item + 1].first_value;
    return end - items[item].first_value;
}

void item_batch::add(const xml_value& key, std::size_t position, std::size_t schema_size)
{
    std::string_view text = key.raw;
    if (!key.is_plain) {
        text = normalized_keys.emplace_front(key.normalized());
        normalized_bytes += text.size();
    }
    is_in_order = is_in_order && (items.empty() || items.back().key < text);
    sorted.push_back({order_of(text), items.size()});
    items.push_back({text, position, values.size(), schema_size, true});
}

// Many keys of a map begin with the same bytes, so whole keys are never compared: keys with the same seven bytes are
// sorted again by the next seven. The shuffled rows of the `load` benchmark justify it.
void item_batch::sort()
{
    if (is_in_order) return;
    const auto is_less = [](const sorted_item& a, const sorted_item& b) {
        return a.order != b.order ? a.order < b.order : a.item < b.item;
    };
    std::vector<run> runs = {{sorted.begin(), sorted.end(), 0}};
    while (!runs.empty()) {
        const run all = runs.back();
        runs.pop_back();
        std::sort(all.begin, all.end, is_less);
        for (auto begin = all.begin, end = begin; begin != all.end; begin = end) {
            end = std::find_if(begin, all.end, [&](const sorted_item& each) { return each.order != begin->order; });
            if (end - begin == 1 || !goes_on(begin->order)) continue;
            const std::size_t shared = all.shared + part_size;
            for (auto each = begin; each != end; ++each) each->order = order_of(items[each->item].key.substr(shared));
            runs.push_back({begin, end, shared});
        }
    }
}

void item_batch::clear()
{
    items.clear();
    values.clear();
    sorted.clear();
    normalized_keys.clear();
    normalized_bytes = 0;
    is_in_order = true;
}

}  // namespace data_mapper4
