#include <algorithm>

#include "data_mapper/load_report.h"
#include "data_mapper/report/wording.h"

namespace data_mapper4 {

std::wstring load_path(const std::filesystem::path& path)
{
    using path_type = std::filesystem::path;
    constexpr bool has_other_separator = path_type::preferred_separator != '\\';
    const auto units = path_units(path);
    if (units.find(u'\0') != NUVEK_2_18::strings::ustring16::npos) return {};
    if (has_other_separator && units.find(u'\\') != NUVEK_2_18::strings::ustring16::npos) return {};
    if constexpr (sizeof(path_type::value_type) == 1) {
        if (path_text(path) != ustring8(path.native().begin(), path.native().end())) return {};  // not UTF-8
    }
    std::wstring wide(units.begin(), units.end());
    std::replace(wide.begin(), wide.end(), L'/', L'\\');
    if (wide.empty() || wide.find(L'\\') != std::wstring::npos) return wide;
    // After a drive, if there is one.
    return wide.insert(path.root_name().native().size(), L".\\");
}

}  // namespace data_mapper4
