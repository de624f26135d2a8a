#include "data_mapper/item_store.h"

#include <algorithm>
#include <cstdint>
#include <new>
#include <stdexcept>
#include <utility>

#include "data_mapper/item_block.h"

namespace data_mapper4 {

namespace {

struct sortable_item
{
    std::uint64_t order;  // if two are equal, the keys are compared
    stored_item item;
};

std::size_t shared_size(std::string_view a, std::string_view b)
{
    const std::size_t size = std::min(a.size(), b.size());
    return static_cast<std::size_t>(
        std::mismatch(a.begin(), a.begin() + static_cast<std::ptrdiff_t>(size), b.begin()).first - a.begin());
}

// The first eight bytes of the text as a number, so that most comparisons need not look at the texts.
std::uint64_t order_of(std::string_view text)
{
    std::uint64_t order = 0;
    for (std::size_t i = 0; i < sizeof(order); ++i) {
        order = order << 8 | (i < text.size() ? static_cast<unsigned char>(text[i]) : 0U);
    }
    return order;
}

}  // namespace

item_block* item_block::make(std::size_t capacity)
{
    if (capacity > item_index::most_bytes) throw std::length_error("a table of 1 TiB or more");
    if (capacity + sizeof(item_block) < capacity) throw std::bad_alloc();
    auto* const made = new (::operator new(sizeof(item_block) + capacity)) item_block;
    made->capacity = capacity;
    return made;
}

void item_block::destroy(item_block* block) noexcept
{
    block->~item_block();
    ::operator delete(block);
}

void item_values::copy_to(std::vector<ustring8>& texts) const
{
    item_values(*this).take_row(texts);
}

void item_values::copy_to(std::vector<std::vector<ustring8>>& rows) const
{
    rows.clear();
    for (item_values left = *this; !left.empty();) left.take_row(rows.emplace_back());
}

// Reuses the memory of the existing strings.
void item_values::take_row(std::vector<ustring8>& texts)
{
    std::size_t size = 0;
    for (std::string_view value; take(value); ++size) {
        if (size < texts.size()) {
            texts[size].assign(value);
        } else {
            texts.emplace_back(value);
        }
    }
    texts.resize(size);
}

item_store::item_store(const item_store& other) noexcept : m_block(other.m_block)
{
    if (m_block != nullptr) m_block->holders.fetch_add(1, std::memory_order_relaxed);
}

item_store::item_store(item_store&& other) noexcept : m_block(std::exchange(other.m_block, nullptr)) {}

item_store& item_store::operator=(item_store other) noexcept
{
    std::swap(m_block, other.m_block);
    return *this;
}

item_store::~item_store()
{
    const bool is_last = m_block != nullptr && m_block->holders.fetch_sub(1, std::memory_order_acq_rel) == 1;
    if (is_last) item_block::destroy(m_block);
}

std::size_t item_store::size() const
{
    return m_block == nullptr ? 0 : m_block->size;
}

std::string_view item_store::records() const
{
    return m_block == nullptr ? std::string_view() : m_block->records();
}

stored_item item_store::find(std::string_view key) const
{
    if (m_block == nullptr) return {};
    const std::string_view records = m_block->records();
    if (m_block->index != nullptr) {
        const std::size_t record = m_block->index->find(key, records.data());
        return record == item_index::nowhere ? stored_item() : stored_item(records.data() + record);
    }
    const char* const end = records.data() + records.size();
    for (const char* at = records.data(); at != end;) {
        const stored_item item(at);
        if (item.key() == key) return item;
        at = item.end();
    }
    return {};
}

// The prefix that all keys share is left out of the numbers, because it is often longer than eight bytes.
std::vector<stored_item> item_store::sorted() const
{
    std::vector<stored_item> items;
    items.reserve(size());
    for_each([&](const stored_item& item) { items.push_back(item); });
    const auto is_before = [](const stored_item& a, const stored_item& b) { return a.key() < b.key(); };
    if (std::is_sorted(items.begin(), items.end(), is_before)) return items;

    const std::string_view first = items.front().key();
    std::size_t shared = first.size();
    for (const stored_item& each : items) shared = std::min(shared, shared_size(first, each.key()));
    std::vector<sortable_item> sortable;
    sortable.reserve(items.size());
    for (const stored_item& each : items) sortable.push_back({order_of(each.key().substr(shared)), each});
    std::sort(sortable.begin(), sortable.end(), [&](const sortable_item& a, const sortable_item& b) {
        return a.order != b.order ? a.order < b.order : is_before(a.item, b.item);
    });
    std::transform(sortable.begin(), sortable.end(), items.begin(),
                   [](const sortable_item& each) { return each.item; });
    return items;
}

}  // namespace data_mapper4
