#include "data_mapper/version.h"

namespace data_mapper4 {

std::string version()
{
    constexpr int number = DATA_MAPPER4_VERSION;
    return std::to_string(number / 10000) + '.' + std::to_string(number / 100 % 100) + '.' +
           std::to_string(number % 100);
}

}  // namespace data_mapper4
