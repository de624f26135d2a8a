#include "data_mapper/report/file_set.h"

#include <utility>

#include "data_mapper/report/value_count.h"
#include "data_mapper/report/wording.h"
#include "platform/text_file.h"

namespace data_mapper4 {

namespace {

namespace fs = std::filesystem;
using NUVEK_2_18::parser::folder_bound;
using NUVEK_2_18::parser::text_file;
using NUVEK_2_18::parser::xml_document;

// In bytes. Every place in a report has a path, so a longer one could make the report far larger than the files.
constexpr std::size_t longest_shown_path = 512;

NUVEK_2_18::strings::ustring16 units(const std::wstring& path)
{
    return {path.begin(), path.end()};
}

std::optional<folder_bound> bound_of(const fs::path& master, const check_options& options)
{
    if (!options.within) return std::nullopt;
    return std::optional<folder_bound>(std::in_place, options.within->u8string(), master.parent_path().u8string());
}

}  // namespace

file_set::file_set(const fs::path& master, const check_options& options)
    : m_options(options),
      m_bound(bound_of(master, options)),
      m_is_folder_shown(master.has_parent_path()),
      m_files_left(options.max_files),
      m_bytes_left(options.max_bytes),
      m_values_left(options.max_values)
{
}

std::optional<file_set::opened> file_set::open(const std::wstring& path, const element_place& include)
{
    if (m_limit) return std::nullopt;
    if (m_files_left == 0) {
        exceed(m_options.max_files, "file", {}, include);
        return std::nullopt;
    }
    --m_files_left;
    if (include.file == no_number) m_base_size = path.rfind(L'\\') + 1;
    const auto known = m_by_path.find(units(path.substr(m_base_size)));
    if (known == m_by_path.end()) return read(path, include);
    const entry& file = m_files[known->second];
    if (!take_bytes(file.size, file.path, include)) return std::nullopt;
    return opened{file_access::open, known->second};
}

std::optional<file_set::opened> file_set::read(const std::wstring& path, const element_place& include)
{
    text_file source(units(path), bound());
    if (!source.is_open()) return opened{source.access(), no_number};
    const auto [known, is_new] = m_by_identity.emplace(source.identity(), m_files.size());
    const std::size_t number = known->second;
    ustring8 name = as_given(source.path());
    NUVEK_2_18::parser::document_text text;
    if (is_new) text = source.read(m_bytes_left);
    if (!take_bytes(is_new ? source.size() : m_files[number].size, name, include)) return std::nullopt;
    m_by_path.emplace(units(path.substr(m_base_size)), number);
    if (!is_new) return opened{file_access::open, number};
    const auto document = std::make_shared<const xml_document>(check_document(std::move(text), true));
    ustring8 shown = shortened(name, longest_shown_path);
    m_files.push_back({std::move(name), std::move(shown), document, source_text(document->text.view()), source.size()});
    return opened{file_access::open, number};
}

bool file_set::take_bytes(std::uint64_t size, const ustring8& path, const element_place& include)
{
    if (size > m_bytes_left) {
        return exceed(m_options.max_bytes, "byte", in_quotes(path), include);
    }
    m_bytes_left -= size;
    return true;
}

bool file_set::take_values(std::size_t file)
{
    const auto excess = data_mapper4::take_values(*m_files[file].document, m_values_left);
    if (!excess) return true;
    return exceed(m_options.max_values, "value", "this map", {file, *excess});
}

// Returns false.
bool file_set::exceed(std::uint64_t limit, const ustring8& unit, const ustring8& by, const element_place& where)
{
    const ustring8 plural = unit + 's';
    const ustring8 number = std::to_string(limit) + ' ' + (limit == 1 ? unit : plural);
    m_limit = {
        "the limit of " + number + " is exceeded" + (by.empty() ? by : " by " + by) + "; nothing further is read",
        "raise check_options::max_" + plural + ", or --max-" + plural + " of the tool", where};
    return false;
}

// load_path() names the current folder if the master file's path names none.
ustring8 file_set::as_given(const ustring8& path) const
{
    const bool is_dot_hidden =
        !m_is_folder_shown && path.size() > 2 && path[0] == '.' && path[2] != '/' && path[2] != '\\';
    fs::path name = fs::u8path(is_dot_hidden ? path.substr(2) : path);
    return path_text(name.make_preferred());
}

}  // namespace data_mapper4
