// Internal: the memory that holds a document.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

namespace NUVEK_2_18::parser {

// A text followed by zero bytes, so that scans stop at its end without counting and may read a little beyond it.
class text_buffer
{
public:
    // The number of zero bytes after the text.
    static constexpr std::size_t padding = 64;

    // In bytes. The distance between any two of them fits in a std::ptrdiff_t, and twice the capacity in a std::size_t.
    static constexpr std::size_t largest_capacity = PTRDIFF_MAX - padding;

    text_buffer() = default;

    // Empty, with room for this many bytes. Throws std::bad_alloc for more than the largest capacity.
    explicit text_buffer(std::size_t capacity);

    char* data() { return m_bytes.get() + m_begin; }
    std::size_t size() const { return m_size; }
    std::size_t capacity() const { return m_capacity; }
    std::string_view view() const;

    // Sets the size, which must not exceed the capacity. Existing bytes are kept; new bytes are unspecified.
    void resize(std::size_t size);

    // Removes this many bytes from the beginning.
    void remove_prefix(std::size_t size);

    // Raises the capacity to this many bytes, or throws like the constructor. Existing bytes are kept.
    void grow(std::size_t capacity);

private:
    struct releaser
    {
        std::size_t mapped_size;  // the bytes mapped for it; 0 if it is on the heap
        void operator()(char* bytes) const;
    };
    using block = std::unique_ptr<char[], releaser>;

    static block allocate(std::size_t size);

    block m_bytes;
    std::size_t m_begin = 0;
    std::size_t m_size = 0;
    std::size_t m_capacity = 0;
};

}  // namespace NUVEK_2_18::parser
