// live_maps: maps that any number of threads query while one thread reloads them when their files change. Copy this file
// into your host.
//
//     live_maps maps("maps/world.xml");                    // loads
//     std::clog << maps.report().text();                   // what is wrong with the files, if anything
//
//     const auto snapshot = maps.snapshot();               // any thread, for each request
//     snapshot->get_arg("territory_names_en", "CH", name);
//
//     if (maps.poll()) std::clog << maps.report().text();  // one thread, every second or so
//
// A snapshot is one load of the whole set, without an error, and never changes: keep it as long as answers must be
// consistent. If the files are faulty, the last good snapshot stays. It is empty until there is one.
//
// A file has changed if its size or modification time differs. A change is loaded once the files have been stable from
// one poll to the next. If a file changes while the set is read, that load is dropped, and a later poll tries again; a
// set that never settles is never loaded. Poll no faster than the file system's clock ticks: 10 ms, or 2 s on FAT.
//
// Nobody can tell that an author is about to save another file. Rename a file into place. If several must fit together,
// write them to a new folder and rename a symbolic link to it into place.
//
// Cost: a poll asks for the size and time of each file. It loads if one changed, and also while the files are faulty,
// because a missing file may appear anywhere. The constructor loads twice, as do polls that find other files.
#pragma once

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <system_error>
#include <utility>
#include <vector>

#include "data_mapper/load_report.h"
#include "data_mapper/map_collection.h"

class live_maps
{
public:
    using collection = std::shared_ptr<data_mapper4::map_collection>;

    explicit live_maps(std::filesystem::path master) : m_master(std::move(master))
    {
        // The first load finds out which files to watch. The third is only needed if they change meanwhile.
        int loads = 1;
        while (!load() && loads < 3) ++loads;
    }

    // Any thread. Waits only for a copy or swap of the pointer. Only query it: other threads share it.
    collection snapshot() const
    {
        const std::lock_guard lock(m_mutex);
        return m_current;
    }

    // One thread. Returns true if it has loaded the files; report() has the result. Old collections are
    // destroyed here once no reader holds them, so no reader pays for it. If memory runs out, the snapshot stays.
    bool poll()
    {
        // Nobody can get hold of an old collection any more: if the count is 1, it stays 1.
        const auto is_unused = [](const collection& each) { return each.use_count() == 1; };
        m_old.erase(std::remove_if(m_old.begin(), m_old.end(), is_unused), m_old.end());

        const file_stamps before = m_seen;
        for (auto& [file, seen] : m_seen) seen = stamp(file);
        const bool is_current = m_seen == m_loaded && m_report.errors() == 0;
        return m_seen == before && !is_current && load();
    }

    // The thread that polls. The report of the last load that was not dropped.
    const data_mapper4::load_report& report() const { return m_report; }

private:
    using file_stamp = std::pair<std::filesystem::file_time_type, std::uintmax_t>;
    using file_stamps = std::map<std::filesystem::path, file_stamp>;

    // Missing files all have the same stamp.
    static file_stamp stamp(const std::filesystem::path& file)
    {
        std::error_code ignored;
        return {std::filesystem::last_write_time(file, ignored), std::filesystem::file_size(file, ignored)};
    }

    // Returns false, and drops what it has loaded, if the files are not those of the last poll or have changed since.
    bool load()
    {
        m_old.reserve(m_old.size() + 1);  // so that nothing can fail after the swap
        auto fresh = std::make_shared<data_mapper4::map_collection>();
        data_mapper4::load_report report = data_mapper4::load_maps(*fresh, m_master);
        file_stamps stamps = {{m_master, {}}};
        for (const auto& each : report.files()) stamps[std::filesystem::u8path(each.path)] = {};
        for (auto& [file, seen] : stamps) seen = stamp(file);
        m_seen.swap(stamps);
        if (m_seen != stamps) return false;
        m_loaded = m_seen;
        m_report = std::move(report);
        if (m_report.errors() == 0) replace(std::move(fresh));
        return true;
    }

    void replace(collection fresh)
    {
        {
            const std::lock_guard lock(m_mutex);
            m_current.swap(fresh);
        }
        m_old.push_back(std::move(fresh));
    }

    const std::filesystem::path m_master;
    file_stamps m_seen;    // at the last poll
    file_stamps m_loaded;  // of the files that m_report is about
    data_mapper4::load_report m_report;
    std::vector<collection> m_old;  // those that readers may still hold

    mutable std::mutex m_mutex;  // for m_current
    collection m_current = std::make_shared<data_mapper4::map_collection>();
};
