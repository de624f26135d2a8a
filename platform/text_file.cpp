#include "platform/text_file.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "platform/unicode.h"

namespace NUVEK_2_18::parser {

namespace {

// In UTF-8. Empty if the text cannot be a path. A hostile file may include many paths that are too long; those never
// reach the system.
strings::ustring8 utf8_path(const strings::ustring16& path)
{
    strings::ustring8 text;
    if (path.size() > system_file::longest_path || path.find(u'\0') != strings::ustring16::npos) return text;
    return unicode::append_utf16(path, text) ? text : strings::ustring8();
}

// A text_buffer refuses a capacity that could not be doubled.
std::size_t grown(std::size_t capacity, std::size_t claimed)
{
    return capacity < claimed ? std::min(capacity * 2, claimed) : capacity * 2;
}

}  // namespace

strings::ustring8 system_path(const strings::ustring16& path)
{
    strings::ustring8 text = utf8_path(path);
    std::replace(text.begin(), text.end(), system_file::other_separator, system_file::separator);
    return text;
}

text_file::text_file(const strings::ustring16& path, const folder_bound* bound)
{
    open(utf8_path(path), bound);
    const bool is_found = m_access == file_access::open || m_access == file_access::unreadable;
    if (!is_found) open(system_path(path), bound);
    if (is_open()) m_size = static_cast<std::uint64_t>(std::max<std::int64_t>(m_file.size(), 0));
}

void text_file::open(strings::ustring8 path, const folder_bound* bound)
{
    if (path.empty()) return;
    m_access = bound == nullptr ? open_file(path, m_file) : bound->open_file(path, m_file);
    m_path = std::move(path);
}

document_text text_file::read(std::uint64_t most_bytes)
{
    // The first buffer is as large as the file claims to be, up to this size; beyond it the buffer grows as data
    // arrives.
    constexpr std::size_t most_at_once = std::size_t{1} << 26;
    // Some systems do not read 2 GiB or more in one call.
    constexpr std::size_t most_in_a_call = std::size_t{1} << 30;
    if (m_size > most_bytes) return {{}, xml_fault::too_large};
    // One more, so that a file of the claimed size is read to its end without growing the buffer.
    const auto claimed = static_cast<std::size_t>(std::min<std::uint64_t>(m_size, SIZE_MAX / 4)) + 1;
    text_buffer bytes(std::min(claimed, most_at_once));
    std::int64_t got = 0;
    do {
        if (bytes.size() == bytes.capacity()) bytes.grow(grown(bytes.capacity(), claimed));
        const std::uint64_t left = std::max<std::uint64_t>(most_bytes - bytes.size(), 1);
        const auto room =
            static_cast<std::size_t>(std::min<std::uint64_t>({left, bytes.capacity() - bytes.size(), most_in_a_call}));
        got = m_file.read(bytes.data() + bytes.size(), room);
        if (got > 0) bytes.resize(bytes.size() + static_cast<std::size_t>(got));
    } while (got > 0 && bytes.size() <= most_bytes);
    m_file = system_file();
    m_size = bytes.size();
    if (got < 0) return {{}, xml_fault::read_failed};
    if (bytes.size() > most_bytes) return {{}, xml_fault::too_large};
    return decode_document(std::move(bytes));
}

}  // namespace NUVEK_2_18::parser
