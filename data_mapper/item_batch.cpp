#include "data_mapper/item_batch.h"

namespace data_mapper4 {

namespace {

using iterator = std::vector<gathered_item>::iterator;

// Items whose keys share their first bytes.
struct alike
{
    iterator begin;
    iterator end;
    std::size_t shared;
};

std::size_t common_size(std::string_view a, std::string_view b, std::size_t known)
{
    const std::size_t most = std::min(a.size(), b.size());
    while (known < most && a[known] == b[known]) ++known;
    return known;
}

// Eight bytes from there on as a number whose order is theirs. Zeros stand for those that are missing: no key holds
// one.
std::uint64_t order_of(std::string_view key, std::size_t from)
{
    const std::string_view bytes = key.substr(from, sizeof(std::uint64_t));
    std::uint64_t order = 0;
    if (bytes.size() == sizeof order) {
        // One load for the compiler.
        for (std::size_t i = 0; i < sizeof order; ++i) order = order << 8 | static_cast<unsigned char>(bytes[i]);
        return order;
    }
    for (const char byte : bytes) order = order << 8 | static_cast<unsigned char>(byte);
    return order << 8 * (sizeof order - bytes.size() - 1) << 8;
}

// Sorts by the eight bytes behind what all the keys share; gives where those begin.
std::size_t sort_by_first_difference(const alike& run)
{
    const std::string_view first = run.begin->key;
    std::size_t shared = first.size();
    for (auto item = run.begin; item != run.end && shared != run.shared; ++item) {
        shared = std::min(shared, common_size(first.substr(0, shared), item->key, run.shared));
    }
    for (auto item = run.begin; item != run.end; ++item) item->order = order_of(item->key, shared);
    std::sort(run.begin, run.end, [](const gathered_item& a, const gathered_item& b) { return a.order < b.order; });
    return shared;
}

}  // namespace

// Keys of one map often begin alike in groups, so whole keys are never compared: what sorts alike by some bytes is
// sorted again by those behind them. Since no key holds a zero byte, keys that sort alike by eight bytes reach behind
// them all together, or are equal.
void sort_by_key(std::vector<gathered_item>& items)
{
    std::vector<alike> runs = {{items.begin(), items.end(), 0}};
    while (!runs.empty()) {
        const alike run = runs.back();
        runs.pop_back();
        const std::size_t next = sort_by_first_difference(run) + sizeof gathered_item::order;
        for (auto begin = run.begin; begin != run.end;) {
            const auto end =
                std::find_if(begin, run.end, [&](const gathered_item& item) { return item.order != begin->order; });
            if (end - begin > 1 && begin->key.size() >= next) runs.push_back({begin, end, next});
            begin = end;
        }
    }
}

}  // namespace data_mapper4
