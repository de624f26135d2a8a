// copy_on_write: holds a container that copies of the holder share until one of them changes it. A new holder has an
// empty container.
//
// Threads: several threads may copy a holder and call read() on it at once; anything else must not overlap with another
// use of the same holder. Two holders never disturb each other, whether or not they share a container.
#pragma once

#include <atomic>
#include <cstddef>
#include <utility>

namespace data_mapper4 {

template <class container>
class copy_on_write
{
public:
    copy_on_write() : m_shared(new shared) {}
    copy_on_write(const copy_on_write& other)
        : m_shared(other.m_shared->is_exposed ? new shared(other.read()) : other.m_shared)
    {
        if (m_shared == other.m_shared) m_shared->holders.fetch_add(1, std::memory_order_relaxed);
    }
    copy_on_write& operator=(const copy_on_write& other)
    {
        if (this != &other) take(copy_on_write(other));
        return *this;
    }
    ~copy_on_write()
    {
        if (m_shared->holders.fetch_sub(1, std::memory_order_acq_rel) == 1) delete m_shared;
    }

    // The container, for reading only. Valid until this holder changes.
    const container& read() const { return m_shared->items; }

    // The container, for changes: this holder's own, and valid until the holder is copied. If others share it, it is
    // copied first. Loading the count with acquire makes visible what former holders did before they released the
    // container.
    container& write()
    {
        if (m_shared->holders.load(std::memory_order_acquire) != 1) take(copy_on_write(read()));
        return m_shared->items;
    }

    void clear()
    {
        if (m_shared->holders.load(std::memory_order_acquire) == 1) {
            m_shared->items.clear();
        } else {
            take(copy_on_write());
        }
    }

    // The container, for iterators that may change it at any time: from now on, copies of this holder do not share it.
    container& expose()
    {
        container& items = write();
        m_shared->is_exposed = true;
        return items;
    }

private:
    struct shared
    {
        shared() = default;
        explicit shared(const container& from) : items(from) {}
        std::atomic<std::size_t> holders{1};
        bool is_exposed = false;  // changes only while there is one holder
        container items;
    };

    explicit copy_on_write(const container& from) : m_shared(new shared(from)) {}
    void take(copy_on_write&& other) { std::swap(m_shared, other.m_shared); }

    shared* m_shared;
};

}  // namespace data_mapper4
