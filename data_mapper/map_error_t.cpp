#include "data_mapper/map_error_t.h"

namespace data_mapper4 {

map_error_t::result_type map_error_t::type() const
{
    return m_type;
}

void map_error_t::type(result_type type)
{
    m_type = type;
}

unsigned long map_error_t::line()
{
    return m_line;
}

void map_error_t::line(unsigned long line)
{
    m_line = line;
}

}  // namespace data_mapper4
