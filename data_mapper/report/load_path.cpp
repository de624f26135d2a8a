#include <algorithm>

#include "data_mapper/load_report.h"
#include "platform/unicode.h"

namespace data_mapper4 {

namespace {

namespace fs = std::filesystem;

// The path in UTF-16. Empty if it cannot be said so.
NUVEK_2_18::strings::ustring16 units_of(const fs::path& path)
{
    NUVEK_2_18::strings::ustring16 units;
    if constexpr (sizeof(fs::path::value_type) == sizeof(char16_t)) {
        units.assign(path.native().begin(), path.native().end());
    } else {
        const ustring8 bytes(path.native().begin(), path.native().end());
        ustring8 again;
        units = NUVEK_2_18::strings::utf8_to_utf16(bytes);
        NUVEK_2_18::unicode::append_utf16(units, again);
        if (again != bytes) units.clear();
    }
    return units;
}

}  // namespace

std::wstring load_path(const fs::path& path)
{
    constexpr bool is_backslash_separator = fs::path::preferred_separator == '\\';
    const NUVEK_2_18::strings::ustring16 units = units_of(path);
    if (units.find(u'\0') != units.npos) return {};
    if (!is_backslash_separator && units.find(u'\\') != units.npos) return {};
    std::wstring wide(units.begin(), units.end());
    std::replace(wide.begin(), wide.end(), L'/', L'\\');
    if (wide.empty() || wide.find(L'\\') != std::wstring::npos) return wide;
    // After a drive, if there is one.
    return wide.insert(path.root_name().native().size(), L".\\");
}

}  // namespace data_mapper4
