#include "data_mapper/report/include_advice.h"

#include <algorithm>

#include "data_mapper/report/nearest_name.h"
#include "data_mapper/report/wording.h"

namespace data_mapper4 {

namespace {

namespace fs = std::filesystem;

// A larger folder is not looked at as a whole.
constexpr std::size_t most_neighbors = 1000;

// After this many names, nothing more is suggested: many missing files among many others would take too long. After
// this many entries, no more folders are listed: a folder is listed again when includes alternate between two.
constexpr std::size_t most_compared = 200000;
constexpr std::size_t most_listed = 100000;

bool is_same_but_for_case(const ustring8& a, const ustring8& b)
{
    const auto lower = [](char letter) { return letter >= 'A' && letter <= 'Z' ? letter | 0x20 : letter; };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [&](char x, char y) { return lower(x) == lower(y); });
}

// The written path with another last name.
ustring8 with_name(const ustring8& written, const ustring8& name)
{
    return written.substr(0, written.find_last_of("/\\") + 1) + name;
}

}  // namespace

finding_text include_advice::explain_missing(const ustring8& written, const ustring8& opened, const ustring8& including,
                                             file_access access)
{
    if (access == file_access::unreadable) return {in_quotes(written) + " cannot be opened"};
    if (access == file_access::not_a_file) return {in_quotes(written) + " is not a file"};
    finding_text text = {in_quotes(written) + " does not exist"};
    if (!m_may_look || opened.empty()) return text;

    const fs::path path = fs::u8path(opened);
    const ustring8 name = path_text(path.filename());
    const ustring8 near = near_file(path);
    if (!near.empty()) text.message += did_you_mean(in_quotes(with_name(written, near)));
    if (is_same_but_for_case(near, name)) text.hint = "the letter case of file names counts";

    const fs::path beside = fs::u8path(including).parent_path() / fs::u8path(written);
    const bool is_relative = fs::u8path(written).is_relative();
    if (near.empty() && is_relative && beside.parent_path() != m_base && is_file(beside)) {
        const fs::path better = beside.lexically_relative(m_base).generic_string<fs::path::value_type>();
        text.hint = "includes are relative to the folder of the master file: write " + in_quotes(path_text(better));
    }
    return text;
}

ustring8 include_advice::find_unportable(const ustring8& written, const ustring8& opened)
{
    if (written.find('\\') != ustring8::npos) {
        return in_quotes(written) +
               " has a backslash, which sets the base directory if the host has not; write slashes";
    }
    if (!m_may_look) return {};
    const fs::path path = fs::u8path(opened);
    const ustring8 name = path_text(path.filename());
    const std::vector<ustring8>& names = names_in(path.parent_path());
    const auto is_variant = [&](const ustring8& each) { return is_same_but_for_case(each, name); };
    const auto variant = std::find_if(names.begin(), names.end(), is_variant);
    const bool is_exact = !m_has_all_names || std::binary_search(names.begin(), names.end(), name);
    if (variant == names.end() || is_exact) return {};
    return "the file is called " + in_quotes(*variant) + "; other systems tell upper and lower case apart";
}

bool include_advice::is_file(const fs::path& path) const
{
    NUVEK_2_18::parser::system_file file;
    const ustring8 name = path.u8string();
    const auto* const bound = m_files.bound();
    return (bound == nullptr ? NUVEK_2_18::parser::open_file(name, file) : bound->open_file(name, file)) ==
           file_access::open;
}

// The extension must be the same, and makes no name longer.
ustring8 include_advice::near_file(const fs::path& path)
{
    if (m_compared >= most_compared) return {};
    const ustring8 extension = path_text(path.extension());
    std::vector<ustring8> stems;
    for (const ustring8& name : names_in(path.parent_path())) {
        const bool has_extension = name.size() >= extension.size() &&
                                   name.compare(name.size() - extension.size(), extension.size(), extension) == 0;
        if (has_extension) stems.push_back(name.substr(0, name.size() - extension.size()));
    }
    const ustring8 near = nearest(path_text(path.stem()), stems);
    if (!near.empty()) return near + extension;
    return nearest(path_text(path.filename()), names_in(path.parent_path()));
}

ustring8 include_advice::nearest(const ustring8& name, const std::vector<ustring8>& names)
{
    m_compared += names.size();
    return ustring8(nearest_name(name, names, most_neighbors));
}

const std::vector<ustring8>& include_advice::names_in(const fs::path& folder)
{
    if (m_is_folder_known && m_folder == folder) return m_names;
    m_folder = folder;
    m_is_folder_known = true;
    m_names.clear();
    m_has_all_names = m_listed < most_listed;
    if (!m_has_all_names) return m_names;
    const auto* const bound = m_files.bound();
    const ustring8 name = folder.u8string();
    const auto found =
        bound == nullptr ? NUVEK_2_18::parser::files_in(name, most_neighbors) : bound->files_in(name, most_neighbors);
    m_listed += found.entries;
    m_has_all_names = found.entries <= most_neighbors;
    for (const ustring8& each : found.names) m_names.push_back(path_text(fs::u8path(each)));
    std::sort(m_names.begin(), m_names.end());
    return m_names;
}

}  // namespace data_mapper4
