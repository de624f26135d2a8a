#include "data_mapper/report/source_text.h"

#include <algorithm>

#include "platform/unicode.h"

namespace data_mapper4 {

namespace {

namespace unicode = NUVEK_2_18::unicode;

// In bytes.
constexpr std::size_t block_size = std::size_t{1} << 12;

// In code points.
constexpr std::size_t window_size = 160;
constexpr std::size_t window_before = 100;

}  // namespace

void source_text::advance(mark& to, std::size_t byte) const
{
    for (; to.byte < byte; ++to.byte) {
        const char each = m_text[to.byte];
        if (each == '\n') {
            ++to.position.line;
            to.position.column = 1;
        } else if (!unicode::is_continuation(each)) {
            ++to.position.column;
        }
    }
}

text_position source_text::position_of(std::size_t byte)
{
    byte = std::min(byte, m_text.size());
    while (m_marks.back().byte + block_size <= byte) {
        mark next = m_marks.back();
        advance(next, next.byte + block_size);
        m_marks.push_back(next);
    }
    const mark& nearest = m_marks[std::min(byte / block_size, m_marks.size() - 1)];
    if (byte < m_last.byte || m_last.byte < nearest.byte) m_last = nearest;
    advance(m_last, byte);
    return m_last.position;
}

text_window source_text::window_around(std::size_t byte)
{
    text_window window;
    window.column = position_of(byte).column;
    std::size_t begin = std::min(byte, m_text.size());
    for (std::size_t before = 0; begin != 0 && before < window_before && m_text[begin - 1] != '\n'; ++before) {
        do --begin;
        while (begin != 0 && unicode::is_continuation(m_text[begin]));
        --window.column;
    }
    std::size_t end = begin;
    for (std::size_t size = 0; end != m_text.size() && m_text[end] != '\n' && size < window_size; ++size) {
        do ++end;
        while (end != m_text.size() && unicode::is_continuation(m_text[end]));
    }
    window.text = m_text.substr(begin, end - begin);
    return window;
}

}  // namespace data_mapper4
