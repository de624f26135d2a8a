// The files that the benchmarks read: map files of all kinds, as people and tools write them, the same on every run.
// They are written on first use into a folder of their own below the one for temporary files.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "data_mapper/map_error_t.h"

namespace bench {

enum class item_order
{
    sorted,
    shuffled,
};

// What a load reads: one file, or a master file with its includes.
class cell
{
public:
    // The example maps.
    cell() = default;
    // A file of maps of all four kinds.
    cell(std::size_t kibibytes, item_order order) : m_size(kibibytes << 10), m_order(order) {}

    std::string name() const;  // such as "1MiB/shuffled"
    std::string path() const;
    std::size_t size() const;  // in bytes, of all its files

private:
    std::size_t m_size = 0;
    item_order m_order = item_order::sorted;
};

// Three sizes in two orders of items, and the example maps.
const std::vector<cell>& load_cells();

// The path of one of the example files.
std::string example_document(const std::string& name);

// Writes a file of that name, and gives its path.
std::string write_document(const std::string& name, const std::string& content);

// The same, unless this process has written it before. Always anew the first time: there may be one of an older suite.
std::string written_once(const std::string& name, const std::function<std::string()>& make_content);

// The path of a file of maps of all four kinds, about a quarter of the size each.
std::string mixed_document(std::size_t size, item_order order);

// The path of a file with one map, which is called "table" and has the items 0 to items - 1 in no order.
std::string table_document(data_mapper4::map_type type, std::size_t items);

// The name of an item, 4 to 24 bytes and different for every number below a million; and one of the same form that no
// document has.
std::string item_name(std::size_t number);
std::string missing_name(std::size_t number);

}  // namespace bench
