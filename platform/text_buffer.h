// Internal: the memory that holds a document.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

namespace NUVEK_2_18::parser {

// A block of bytes with zero bytes behind it, so that a reader may look a little beyond the text's end and stops there
// without counting.
class text_buffer
{
public:
    // How many zero bytes stand behind the text.
    static constexpr std::size_t padding = 64;

    text_buffer() = default;

    // Empty, with room for this many bytes.
    explicit text_buffer(std::size_t capacity);

    char* data() { return m_bytes.get() + m_begin; }
    std::size_t size() const { return m_size; }
    std::size_t capacity() const { return m_capacity; }
    std::string_view view() const;

    // Sets the size, at most the capacity. What lies within it is kept, or else as it happens to be.
    void resize(std::size_t size);

    // Takes bytes away at the beginning.
    void remove_prefix(std::size_t size);

    // Makes room for this many bytes, more than before, and keeps those within the size.
    void grow(std::size_t capacity);

private:
    struct releaser
    {
        std::size_t mapped_size;  // bytes of whole pages from the system; 0 for memory of the heap
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
