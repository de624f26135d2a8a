#include "data_mapper/load_report.h"

#include "data_mapper/report/report_state.h"

namespace data_mapper4 {

namespace {

// What a report that was moved from shows.
template <class value>
const value& nothing()
{
    static const value empty;
    return empty;
}

}  // namespace

load_report::load_report() = default;
load_report::~load_report() = default;
load_report::load_report(load_report&& other) noexcept = default;
load_report& load_report::operator=(load_report&& other) noexcept = default;

map_error_t load_report::result() const
{
    return m_state == nullptr ? map_error_t() : m_state->result;
}

const std::vector<finding>& load_report::findings() const&
{
    return m_state == nullptr ? nothing<std::vector<finding>>() : m_state->findings;
}

const std::vector<checked_map>& load_report::maps() const&
{
    return m_state == nullptr ? nothing<std::vector<checked_map>>() : m_state->maps;
}

const std::vector<checked_file>& load_report::files() const&
{
    return m_state == nullptr ? nothing<std::vector<checked_file>>() : m_state->files;
}

std::size_t load_report::errors() const
{
    return m_state == nullptr ? 0 : m_state->errors;
}

std::size_t load_report::warnings() const
{
    return m_state == nullptr ? 0 : m_state->warnings;
}

bool load_report::is_complete() const
{
    return m_state == nullptr || m_state->is_complete;
}

}  // namespace data_mapper4
