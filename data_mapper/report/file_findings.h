// Internal: adds findings of one file, at parts of its text.
#pragma once

#include <cstddef>
#include <string_view>

#include "data_mapper/report/report_writer.h"

namespace data_mapper4 {

class file_findings
{
public:
    // The text is that of the content's file; all parts are views of it.
    file_findings(report_writer& writer, std::size_t content, std::string_view text)
        : m_writer(writer), m_content(content), m_text(text)
    {
    }

    template <class maker>
    void add(rule broken, std::string_view part, maker make)
    {
        const std::size_t begin = offset_of(part.data());
        m_writer.add(m_content, broken, begin, begin + part.size(), make);
    }

    text_part part_of(std::string_view part) const
    {
        const std::size_t begin = offset_of(part.data());
        return {m_writer.content(m_content).file, begin, begin + part.size()};
    }

    related_place related(const ustring8& message, std::string_view part)
    {
        return {message, m_writer.place_of(part_of(part))};
    }

    report_writer& writer() { return m_writer; }

private:
    std::size_t offset_of(const char* at) const { return static_cast<std::size_t>(at - m_text.data()); }

    report_writer& m_writer;
    std::size_t m_content;
    std::string_view m_text;
};

}  // namespace data_mapper4
