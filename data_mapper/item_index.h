// Internal: finds the items of a block by their keys.
//
// The index is a hash table with open addressing. Nobody can make it slow by choosing keys that collide: if a key would
// be too far from its home, or the keys are too far from theirs on average, the index becomes an ordered one. The
// hash therefore needs no secret.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

namespace data_mapper4 {

// Aligned like the slots, which follow it in memory.
class alignas(std::uint64_t) item_index
{
public:
    struct deleter
    {
        void operator()(item_index* index) const noexcept;
    };
    using pointer = std::unique_ptr<item_index, deleter>;

    static constexpr std::size_t nowhere = static_cast<std::size_t>(-1);

    // The limit of `records`, in bytes.
    static constexpr std::uint64_t most_bytes = (std::uint64_t{1} << 40) - 2;

    // Where a key is or belongs.
    struct place
    {
        std::size_t record;  // where the item's record begins; nowhere if there is none with the key
        std::uint64_t hash;
        std::size_t slot;
        std::size_t distance;  // of the slot from the key's home
    };

    // Fast rather than strong. Differs with the machine's byte order, which cannot be observed.
    static std::uint64_t hash_of(std::string_view key);

    // Returns an index of the items in the records, with room for at least this many.
    static pointer make(std::string_view records, std::size_t items);

    item_index(const item_index&) = delete;
    item_index& operator=(const item_index&) = delete;

    bool has_room_for(std::size_t items) const;
    bool is_ordered() const { return m_ordered != nullptr; }

    // Returns where the item's record begins, or nowhere.
    std::size_t find(std::string_view key, const char* records) const;

    // Returns the key's place for add(). It stays valid until another item is added.
    place place_of(std::string_view key, const char* records) const;

    // Whether an item at that place would make the index slow; if so, call order() before adding it.
    bool is_too_far(const place& where) const;
    void order(std::string_view records);

    // Adds an item, whose record begins there. Returns false if its key is not new.
    bool add(const place& where, std::size_t record);

    // Tells the index that the records have moved.
    void move_to(const char* records);

private:
    struct ordered_index;
    struct ordered_deleter
    {
        void operator()(ordered_index* index) const noexcept;
    };

    explicit item_index(std::size_t slots) : m_mask(slots - 1) {}
    ~item_index() = default;

    template <class test>
    place probe(std::uint64_t hash, test is_key) const;
    bool fill(std::string_view records);
    std::uint64_t* slots() { return static_cast<std::uint64_t*>(static_cast<void*>(this + 1)); }
    const std::uint64_t* slots() const { return static_cast<const std::uint64_t*>(static_cast<const void*>(this + 1)); }

    std::size_t m_mask;
    std::size_t m_items = 0;     // in the slots
    std::size_t m_distance = 0;  // of all their slots together
    std::unique_ptr<ordered_index, ordered_deleter> m_ordered;
};

}  // namespace data_mapper4
