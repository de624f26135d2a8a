// Internal: what a report holds.
#pragma once

#include <cstddef>
#include <vector>

#include "data_mapper/load_report.h"

namespace data_mapper4 {

struct load_report::state
{
    map_error_t result;
    std::vector<finding> findings;
    std::vector<checked_map> maps;
    std::vector<checked_file> files;
    std::size_t errors = 0;
    std::size_t warnings = 0;
    bool is_complete = true;
};

}  // namespace data_mapper4
