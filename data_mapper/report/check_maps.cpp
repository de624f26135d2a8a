// Checks a set of files: follows the includes from the master file on, those that load followed and, after a fault, the
// others as well. Each file is checked once, where it is included first.
#include <algorithm>
#include <deque>
#include <utility>

#include "data_mapper/report/content_checker.h"
#include "data_mapper/report/include_advice.h"
#include "data_mapper/report/wording.h"
#include "platform/text_file.h"

namespace data_mapper4 {

namespace {

namespace fs = std::filesystem;

// A cycle of more files is named in part.
constexpr std::size_t most_chain_names = 10;

std::string_view tag_at(const xml_document& document, std::size_t position)
{
    xml_element element;
    document.index.read(position, element);
    return tag_part(element);
}

class set_checker
{
public:
    set_checker(const fs::path& master, const check_options& options)
        : m_master(master),
          m_path(load_path(master)),
          m_files(master, options),
          m_load(m_files),
          m_names(m_load, m_files),
          m_writer(m_files, options),
          m_advice(master, m_files, options.suggest_files)
    {
    }

    // Loads into `maps`, which must be new.
    load_report check(map_collection& maps)
    {
        m_load.load(maps, m_path);
        begin();
        while (!m_chain.empty()) {
            if (m_chain.back().checker.next()) {
                follow(m_chain.back().checker);
            } else {
                leave();
            }
        }
        add_limit();
        list_files();
        list_maps(maps);
        return m_writer.finish();
    }

private:
    // A file whose check waits for the one that it includes.
    struct open_file
    {
        std::size_t file;
        std::size_t reading;  // the first one; no_number if load did not read it
        std::size_t content;
        content_checker checker;
    };

    struct known_file
    {
        std::size_t content;
        bool is_open = true;
        bool declares_maps = false;  // itself or what it includes
    };

    ustring8 shown_master() const { return path_text(fs::path(m_master).make_preferred()); }

    void begin()
    {
        const reading& master = m_load.readings().front();
        m_writer.state().result = master.result;
        if (!master.opened) return;  // the limit is reported
        if (master.opened->file != no_number) {
            enter(master.opened->file, no_number, {});
        } else if (master.opened->access == file_access::outside) {
            m_writer.add_unplaced(shown_master(), rule::outside_folder, {outside_message(shown_master())});
        } else if (m_path.empty()) {
            const bool has_backslash = shown_master().find('\\') != ustring8::npos;
            m_writer.add_unplaced(
                shown_master(), rule::missing_file,
                {has_backslash ? "a path with a backslash in a name cannot be loaded"
                               : "a path that is empty, is not Unicode or contains a zero cannot be loaded",
                 has_backslash ? "write the path with slashes" : ""});
        } else {
            m_writer.add_unplaced(
                shown_master(), rule::missing_file,
                m_advice.explain_missing(shown_master(), shown_master(), shown_master(), master.opened->access));
        }
    }

    void enter(std::size_t file, std::size_t parent, const text_part& include)
    {
        const std::size_t first = m_load.first_of(file);
        const xml_document& document = *m_files.document(file);
        checked_content added = {file, parent, include, map_error_t::no_error, 0};
        if (first != no_number) {
            const reading& load = m_load.readings()[first];
            const bool is_whole = load.end == document.index.size();
            added.code = load.result.type();
            added.end = is_whole ? document.text.size() : offset_of(document, load.end);
        }
        const std::size_t content = m_writer.add(added);
        m_known.emplace(file, known_file{content});
        const file_findings findings(m_writer, content, document.text.view());
        m_chain.push_back({file, first, content, content_checker(findings, document, first, m_names)});
    }

    void leave()
    {
        known_file& done = m_known.at(m_chain.back().file);
        done.is_open = false;
        done.declares_maps = done.declares_maps || m_chain.back().checker.declares_maps();
        m_chain.pop_back();
        if (!m_chain.empty()) m_known.at(m_chain.back().file).declares_maps |= done.declares_maps;
    }

    void follow(content_checker& from)
    {
        const std::size_t from_reading = m_chain.back().reading;
        const std::size_t number =
            from_reading == no_number ? no_number : m_load.included_at(from_reading, from.include_position());
        const reading* const load = number == no_number ? nullptr : &m_load.readings()[number];
        const element_place place = {m_chain.back().file, from.include_position()};
        const auto opened = load != nullptr ? load->opened : m_files.open(path_of(from.include_path()), place);
        if (!opened) return;
        if (opened->access == file_access::outside) return add_outside(from);
        if (opened->access != file_access::open) return add_missing(from, opened->access);
        const auto known = m_known.find(opened->file);
        if (known != m_known.end() && known->second.is_open) return add_cycle(from, opened->file, load);
        // After a fault the check may get to a file earlier than load did.
        const bool is_first = load != nullptr && m_load.first_of(opened->file) == number;
        if (known != m_known.end() && is_first) return;
        if (known != m_known.end()) return add_twice(from, known->second, load);
        add_unportable(from, m_files.path(opened->file));
        enter(opened->file, m_chain.back().content, from.findings().part_of(from.include_tag()));
    }

    // As load makes it of an include.
    std::wstring path_of(const ustring8& include) const
    {
        const auto units = NUVEK_2_18::strings::utf8_to_utf16(include);
        return m_path.substr(0, m_path.rfind(L'\\') + 1) + std::wstring(units.begin(), units.end());
    }

    void add_missing(content_checker& from, file_access access)
    {
        from.findings().add(rule::missing_file, from.include_part(), [&] {
            const std::wstring path = path_of(from.include_path());
            return m_advice.explain_missing(from.include_path(),
                                            NUVEK_2_18::parser::system_path({path.begin(), path.end()}),
                                            m_files.path(m_chain.back().file), access);
        });
    }

    static ustring8 outside_message(const ustring8& path)
    {
        return in_quotes(path) + " is outside the folder that files are restricted to";
    }

    void add_outside(content_checker& from)
    {
        from.findings().add(rule::outside_folder, from.include_part(),
                            [&] { return finding_text{outside_message(from.include_path())}; });
    }

    // Reports the limit at the place where reading stopped, or without a place if that is not in a file that was read.
    void add_limit()
    {
        const auto& limit = m_files.limit();
        if (!limit) return;
        m_writer.state().is_complete = false;
        finding_text text = {limit->message, limit->hint};
        const auto known = m_known.find(limit->where.file);
        if (known == m_known.end()) return m_writer.add_unplaced(shown_master(), rule::limit_reached, text);
        const text_part part = element_part(limit->where.file, limit->where.position);
        m_writer.add(known->second.content, rule::limit_reached, part.begin, part.end, [&] { return text; });
    }

    void add_unportable(content_checker& from, const ustring8& opened)
    {
        const ustring8 message = m_advice.find_unportable(from.include_path(), opened);
        if (message.empty()) return;
        from.findings().add(rule::unportable_path, from.include_part(), [&] { return finding_text{message}; });
    }

    void add_cycle(content_checker& from, std::size_t file, const reading* load)
    {
        from.findings().add(rule::include_cycle, from.include_part(), [&] {
            finding_text text;
            auto each = m_chain.begin();
            while (each->file != file) ++each;
            for (std::size_t named = 0; each != m_chain.end() && named < most_chain_names; ++each, ++named) {
                text.message += in_quotes(m_files.path(each->file)) + " includes ";
            }
            text.message += (each == m_chain.end() ? "" : "... includes ") + in_quotes(m_files.path(file));
            text.hint = "a file must not include itself, not even through others";
            if (load != nullptr) text.code = load->result.type();
            return text;
        });
    }

    // Load has judged whether that matters: it does if a map is loaded twice.
    void add_twice(content_checker& from, const known_file& known, const reading* load)
    {
        if (load == nullptr ? !known.declares_maps : !load->has_duplicate) return;
        from.findings().add(rule::included_twice, from.include_part(), [&] {
            const file_place first = m_writer.place_of(m_writer.content(known.content).include);
            finding_text text = {in_quotes(from.include_path()) + " is included again; its maps are loaded already",
                                 "remove one of the includes",
                                 {{"first included here", first}}};
            if (load != nullptr) text.code = load->result.type();
            return text;
        });
    }

    static std::size_t offset_of(const xml_document& document, std::size_t position)
    {
        return static_cast<std::size_t>(document.index.begin_at(position) - document.text.view().data());
    }

    text_part element_part(std::size_t file, std::size_t position)
    {
        const xml_document& document = *m_files.document(file);
        const std::size_t begin = offset_of(document, position);
        return {file, begin, begin + tag_at(document, position).size()};
    }

    void list_files()
    {
        std::vector<checked_file>& files = m_writer.state().files;
        for (const reading& each : m_load.readings()) {
            if (!each.is_read || file_of(each) == no_number) continue;
            checked_file listed = {m_files.shown_path(file_of(each)), true, each.result, {}};
            if (each.parent != no_number) {
                listed.included_at =
                    m_writer.place_of(element_part(file_of(m_load.readings()[each.parent]), each.include));
            }
            files.push_back(std::move(listed));
        }
        for (const auto& [file, known] : m_known) {
            if (m_load.first_of(file) != no_number) continue;
            const checked_content& content = m_writer.content(known.content);
            const bool is_master = content.parent == no_number;
            files.push_back(
                {m_files.shown_path(file), false, {}, is_master ? file_place() : m_writer.place_of(content.include)});
        }
    }

    void list_maps(map_collection& loaded)
    {
        // In the order of loading, because that is the cheapest order for finding places.
        std::vector<text_range> places;
        places.reserve(m_load.maps().size());
        for (const recorded_map* each : m_load.maps()) {
            const text_part part = element_part(file_of(m_load.readings()[each->reading]), each->position);
            places.push_back(m_writer.range_of(part));
        }
        std::vector<checked_map>& maps = m_writer.state().maps;
        maps.reserve(places.size());
        for (const auto& [name, map] : m_load.maps_by_name()) {
            const std::size_t file = file_of(m_load.readings()[map.reading]);
            maps.push_back({name, loaded.type(name), load_recorder::item_count(loaded, name),
                            m_writer.place_of(file, places[map.number])});
        }
    }

    fs::path m_master;
    std::wstring m_path;
    file_set m_files;
    load_recorder m_load;
    map_names m_names;
    report_writer m_writer;
    include_advice m_advice;
    std::deque<open_file> m_chain;  // each file is included by the one before it
    std::map<std::size_t, known_file> m_known;
};

}  // namespace

load_report check_maps(const fs::path& master, const check_options& options)
{
    map_collection loaded;
    return set_checker(master, options).check(loaded);
}

load_report load_maps(map_collection& maps, const fs::path& master, const check_options& options)
{
    map_collection loaded;
    load_report report = set_checker(master, options).check(loaded);
    if (report.errors() == 0) load_recorder::swap(maps, loaded);
    return report;
}

}  // namespace data_mapper4
