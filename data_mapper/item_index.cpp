#include "data_mapper/item_index.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <set>

#include "data_mapper/item_store.h"

namespace data_mapper4 {

namespace {

// A slot is 0 if it is free. Otherwise its low bits are the record's offset plus one, and its high bits those of the
// key's hash.
constexpr unsigned place_bits = 40;
constexpr std::uint64_t place_mask = (std::uint64_t{1} << place_bits) - 1;

// At most two thirds of the slots are taken. Unless somebody chose keys that collide, a key is then about one slot from
// its home on average, and even the farthest of a hundred million is within these limits.
constexpr std::size_t most_probes = 512;
constexpr std::size_t most_on_average = 8;
constexpr std::size_t always_allowed = 1024;
constexpr std::size_t slots_for_alike = 64;

std::size_t slots_for(std::size_t items)
{
    std::size_t slots = 16;
    while (slots / 3 * 2 < items) {
        if (slots > std::numeric_limits<std::size_t>::max() / 4 / sizeof(std::uint64_t)) throw std::bad_alloc();
        slots *= 2;
    }
    return slots;
}

// The bytes as a number, in the order of the machine.
template <class word>
std::uint64_t word_at(const char* at)
{
    word bytes = 0;
    std::memcpy(&bytes, at, sizeof(word));
    return bytes;
}

std::string_view key_at(const char* records, std::size_t record)
{
    return stored_item(records + record).key();
}

std::size_t record_in(std::uint64_t slot)
{
    return static_cast<std::size_t>((slot & place_mask) - 1);
}

// Calls use(record, key) for all items.
template <class function>
void for_each(std::string_view records, function use)
{
    const char* const end = records.data() + records.size();
    for (const char* at = records.data(); at != end; at = stored_item(at).end()) {
        use(static_cast<std::size_t>(at - records.data()), stored_item(at).key());
    }
}

}  // namespace

struct item_index::ordered_index
{
    struct by_key
    {
        using is_transparent = void;
        const ordered_index* index;
        std::string_view key(std::size_t record) const { return key_at(index->records, record); }
        bool operator()(std::size_t a, std::size_t b) const { return key(a) < key(b); }
        bool operator()(std::string_view a, std::size_t b) const { return a < key(b); }
        bool operator()(std::size_t a, std::string_view b) const { return key(a) < b; }
    };

    const char* records;
    std::set<std::size_t, by_key> items{by_key{this}};

    explicit ordered_index(const char* where) : records(where) {}
    std::size_t find(std::string_view key) const
    {
        const auto found = items.find(key);
        return found == items.end() ? nowhere : *found;
    }
    ordered_index(const ordered_index&) = delete;
    ordered_index& operator=(const ordered_index&) = delete;
};

void item_index::ordered_deleter::operator()(ordered_index* index) const noexcept
{
    delete index;
}

void item_index::deleter::operator()(item_index* index) const noexcept
{
    index->~item_index();
    ::operator delete(index);
}

std::uint64_t item_index::hash_of(std::string_view key)
{
    constexpr std::uint64_t factor = 0x9E3779B97F4A7C15U;
    constexpr std::size_t word_size = 8;
    const char* at = key.data();
    const char* const end = at + key.size();
    std::uint64_t hash = key.size() * factor;
    const auto add = [&](std::uint64_t word) {
        hash = (hash ^ word) * factor;
        hash ^= hash >> 32;
    };
    for (; static_cast<std::size_t>(end - at) > word_size; at += word_size) add(word_at<std::uint64_t>(at));
    if (key.size() >= word_size) {
        add(word_at<std::uint64_t>(end - word_size));
    } else if (key.size() >= 4) {
        add(word_at<std::uint32_t>(at) | word_at<std::uint32_t>(end - 4) << 32);
    } else if (!key.empty()) {
        const auto byte_at = word_at<unsigned char>;
        add(byte_at(at) | byte_at(at + key.size() / 2) << 8 | byte_at(end - 1) << 16);
    }
    hash *= factor;
    return hash ^ hash >> 32;  // the low bits, which choose the slot, depend on all bytes
}

item_index::pointer item_index::make(std::string_view records, std::size_t items)
{
    const std::size_t slots = slots_for(items);
    void* const memory = ::operator new(sizeof(item_index) + slots * sizeof(std::uint64_t));
    pointer made(new (memory) item_index(slots));
    std::memset(static_cast<void*>(made->slots()), 0, slots * sizeof(std::uint64_t));
    if (!made->fill(records)) made->order(records);
    return made;
}

bool item_index::has_room_for(std::size_t items) const
{
    return m_ordered != nullptr || items <= (m_mask + 1) / 3 * 2;
}

// Returns the slot of the key, or a free one for it. The search ends at the distance that no key exceeds. A different
// key whose hash has the same high bits counts as many slots, because the whole keys must be compared; such keys are
// rare unless somebody chose them.
template <class test>
item_index::place item_index::probe(std::uint64_t hash, test is_key) const
{
    std::size_t alike = 0;
    for (std::size_t i = 0; i != most_probes; ++i) {
        const std::size_t at = static_cast<std::size_t>(hash + i) & m_mask;
        const std::uint64_t slot = slots()[at];
        if (slot == 0) return {nowhere, hash, at, i + alike};
        if ((slot ^ hash) >> place_bits != 0) continue;
        if (is_key(record_in(slot))) return {record_in(slot), hash, at, i};
        alike += slots_for_alike;
    }
    return {nowhere, hash, nowhere, most_probes};
}

std::size_t item_index::find(std::string_view key, const char* records) const
{
    if (m_ordered != nullptr) return m_ordered->find(key);
    return probe(hash_of(key), [&](std::size_t record) { return key_at(records, record) == key; }).record;
}

item_index::place item_index::place_of(std::string_view key, const char* records) const
{
    if (m_ordered != nullptr) return {m_ordered->find(key), 0, nowhere, 0};
    return probe(hash_of(key), [&](std::size_t record) { return key_at(records, record) == key; });
}

bool item_index::is_too_far(const place& where) const
{
    const std::size_t allowed = always_allowed + m_items * most_on_average;
    const bool is_far = where.distance >= most_probes || m_distance + where.distance > allowed;
    return m_ordered == nullptr && (where.slot == nowhere || is_far);
}

bool item_index::add(const place& where, std::size_t record)
{
    if (m_ordered != nullptr) return m_ordered->items.insert(record).second;
    if (slots()[where.slot] != 0) return false;
    const auto number = static_cast<std::uint64_t>(record) + 1;
    slots()[where.slot] = (where.hash & ~place_mask) | number;
    m_distance += where.distance;
    ++m_items;
    return true;
}

// Adds the items of the records to the empty slots. Returns false if that would make the index slow.
bool item_index::fill(std::string_view records)
{
    bool is_sound = true;
    for_each(records, [&](std::size_t record, std::string_view key) {
        if (!is_sound) return;
        const place where = probe(hash_of(key), [](std::size_t) { return false; });
        is_sound = !is_too_far(where);
        if (is_sound) add(where, record);
    });
    return is_sound;
}

// The slots are unused from then on, but small compared with the nodes of the set.
void item_index::order(std::string_view records)
{
    std::unique_ptr<ordered_index, ordered_deleter> made(new ordered_index(records.data()));
    for_each(records, [&](std::size_t record, std::string_view) { made->items.insert(record); });
    m_ordered = std::move(made);
}

void item_index::move_to(const char* records)
{
    if (m_ordered != nullptr) m_ordered->records = records;
}

}  // namespace data_mapper4
