#include "platform/text_buffer.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace NUVEK_2_18::parser {

namespace {

#if defined(__linux__)

// From this size on, a text gets pages of its own, large ones if the system has them: the first touch of a page costs
// more than reading it. The 32 MiB rows of the benchmarks justify it.
constexpr std::size_t large_text = std::size_t{4} << 20;

char* map_pages(std::size_t size)
{
    void* const pages = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (pages == MAP_FAILED) throw std::bad_alloc();
    ::madvise(pages, size, MADV_HUGEPAGE);
    return static_cast<char*>(pages);
}

void unmap_pages(char* pages, std::size_t size)
{
    ::munmap(pages, size);
}

#else

constexpr std::size_t large_text = static_cast<std::size_t>(-1);

char* map_pages(std::size_t /*size*/)
{
    throw std::bad_alloc();
}

void unmap_pages(char* /*pages*/, std::size_t /*size*/) {}

#endif

}  // namespace

void text_buffer::releaser::operator()(char* bytes) const
{
    if (mapped_size == 0) {
        delete[] bytes;
    } else {
        unmap_pages(bytes, mapped_size);
    }
}

text_buffer::block text_buffer::allocate(std::size_t size)
{
    if (size < large_text) return block(new char[size], releaser{0});
    return block(map_pages(size), releaser{size});
}

text_buffer::text_buffer(std::size_t capacity) : m_capacity(capacity)
{
    if (capacity > largest_capacity) throw std::bad_alloc();
    m_bytes = allocate(capacity + padding);
    resize(0);
}

std::string_view text_buffer::view() const
{
    static constexpr char nothing[padding] = {};
    return m_bytes == nullptr ? std::string_view(nothing) : std::string_view(m_bytes.get() + m_begin, m_size);
}

void text_buffer::resize(std::size_t size)
{
    m_size = size;
    if (m_bytes != nullptr) std::memset(data() + size, 0, padding);
}

void text_buffer::remove_prefix(std::size_t size)
{
    m_begin += size;
    m_size -= size;
    m_capacity -= size;
}

void text_buffer::grow(std::size_t capacity)
{
    text_buffer larger(capacity);
    std::memcpy(larger.data(), data(), m_size);
    larger.resize(m_size);
    *this = std::move(larger);
}

}  // namespace NUVEK_2_18::parser
