// Internal: what a load did, for a report on it.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "data_mapper/load_listener.h"
#include "data_mapper/report/file_set.h"

namespace data_mapper4 {

// One reading of a file. Load reads a file as often as it is included.
struct reading
{
    std::size_t parent;   // the number of the including file's reading; no_number for the master file
    std::size_t include;  // the position of the including element
    std::optional<file_set::opened> opened;  // nothing if a limit was exceeded
    bool is_read = false;                    // whether load read the file

    map_error_t result = {};     // of this file, as far as the load got
    std::size_t end = 0;         // the position of the first element that the load did not take
    bool has_duplicate = false;  // whether this file, or one that it includes, ended at a map that was loaded already
};

// The number of the file that a reading opened; no_number if it opened none.
inline std::size_t file_of(const reading& each)
{
    return each.opened ? each.opened->file : no_number;
}

struct recorded_map
{
    std::size_t reading;
    std::size_t position;
    std::size_t number;  // in the order of loading, from 0
};

class load_recorder : public load_listener
{
public:
    explicit load_recorder(file_set& files) : m_files(files) {}

    // Loads into `maps`, which must be new.
    void load(map_collection& maps, const std::wstring& path);

    const std::vector<reading>& readings() const { return m_readings; }

    // The loaded maps in the order of loading, and by their names.
    const std::vector<const recorded_map*>& maps() const { return m_maps; }
    const std::map<ustring8, recorded_map>& maps_by_name() const { return m_by_name; }
    const recorded_map* find_map(const ustring8& name) const;

    // Returns the number of the reading of the file that a reading includes at a position, and of the first reading of a
    // file; no_number if the load did not get there.
    std::size_t included_at(std::size_t reading, std::size_t position) const;
    std::size_t first_of(std::size_t file) const;

    static std::size_t item_count(const map_collection& maps, const ustring8& name);
    static void swap(map_collection& a, map_collection& b) noexcept;

private:
    bool on_open(const std::wstring& path, std::size_t include) override;
    std::unique_ptr<NUVEK_2_18::parser::xml_stream_parser> make_parser(const std::wstring& path) override;
    void on_map(std::size_t position, const ustring8& name) override;
    void on_close(const map_error_t& result, std::size_t position) override;

    file_set& m_files;
    std::vector<reading> m_readings;
    std::vector<std::size_t> m_chain;  // the numbers of the readings that are not closed
    std::map<std::pair<std::size_t, std::size_t>, std::size_t> m_included;
    std::map<std::size_t, std::size_t> m_first;  // by file
    std::map<ustring8, recorded_map> m_by_name;
    std::vector<const recorded_map*> m_maps;
};

}  // namespace data_mapper4
