#include "data_mapper/report/file_set.h"

#include <algorithm>
#include <utility>

#include "data_mapper/report/wording.h"
#include "platform/text_file.h"

namespace data_mapper4 {

namespace {

namespace fs = std::filesystem;
using NUVEK_2_18::parser::resolved;
using NUVEK_2_18::parser::text_file;
using NUVEK_2_18::parser::xml_document;
using NUVEK_2_18::parser::xml_fault;

NUVEK_2_18::strings::ustring16 units(const std::wstring& path)
{
    return {path.begin(), path.end()};
}

}  // namespace

file_set::file_set(const fs::path& master, const check_options& options)
    : m_options(options),
      m_within(options.within.empty() ? fs::path() : resolved(options.within)),
      m_is_folder_shown(master.has_parent_path())
{
}

bool file_set::count()
{
    if (m_is_limit_reached) return false;
    m_is_limit_reached = ++m_counted > m_options.max_files;
    return !m_is_limit_reached;
}

ustring8 file_set::limit_text() const
{
    if (m_counted > m_options.max_files)
        return "the limit of " + std::to_string(m_options.max_files) + " files is exceeded";
    return "the limit of " + std::to_string(m_options.max_bytes) + " bytes is exceeded";
}

const file_set::opened& file_set::open(const std::wstring& path)
{
    const auto known = m_by_path.find(path);
    if (known != m_by_path.end()) return known->second;
    const bool is_master = m_files.empty();
    const opened found = read(path, is_master);
    return found.found == state::read ? m_by_path.emplace(path, found).first->second : m_unread = found;
}

file_set::opened file_set::read(const std::wstring& path, bool is_master)
{
    text_file source(units(path));
    const ustring8 name = shown(source.path());
    const bool is_bounded = !is_master && !source.path().empty();
    if (is_bounded && !is_allowed(fs::u8path(source.path()))) return {state::outside, no_number, name};
    if (!source.is_open()) return {state::missing, no_number, name};
    fs::path identity = resolved(fs::u8path(source.path()));
    if (identity.empty()) identity = fs::u8path(source.path()).lexically_normal();
    const auto known = m_by_identity.find(identity);
    if (known != m_by_identity.end()) return {state::read, known->second, name};

    auto text = source.read(m_options.max_bytes - m_bytes);
    m_is_limit_reached = m_is_limit_reached || text.fault_at_end == xml_fault::too_large;
    if (m_is_limit_reached) return {state::beyond_limit, no_number, name};
    const auto document = std::make_shared<const xml_document>(check_document(std::move(text), true));
    m_bytes += document->text.size();
    m_files.push_back({name, document, source_text(document->text.view())});
    m_by_identity.emplace(identity, m_files.size() - 1);
    return {state::read, m_files.size() - 1, name};
}

// load_path() names the current folder if the master file's path names none.
ustring8 file_set::shown(const ustring8& path) const
{
    const bool is_dot_hidden =
        !m_is_folder_shown && path.size() > 2 && path[0] == '.' && path[2] != '/' && path[2] != '\\';
    fs::path name = fs::u8path(is_dot_hidden ? path.substr(2) : path);
    return path_text(name.make_preferred());
}

bool file_set::is_allowed(const fs::path& folder) const
{
    if (m_options.within.empty()) return true;
    const fs::path place = resolved(folder);
    if (m_within.empty() || place.empty()) return false;
    return std::mismatch(m_within.begin(), m_within.end(), place.begin(), place.end()).first == m_within.end();
}

}  // namespace data_mapper4
