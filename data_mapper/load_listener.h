// Internal: what a load tells somebody who follows it, file by file and map by map.
//
// Nothing is told about items, so that a load without a listener is as fast as if there were no listeners.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "data_mapper/map_error_t.h"
#include "platform/xml_stream_parser.h"

namespace data_mapper4 {

class map_collection;

class load_listener
{
public:
    load_listener() = default;
    virtual ~load_listener() = default;
    load_listener(const load_listener&) = delete;
    load_listener& operator=(const load_listener&) = delete;

    // The load turns to a file: the master file, or one that the file opened last includes with the element at this
    // position. Every file is also closed, the one opened last first. Returns false to end the load here, with files left
    // unclosed.
    virtual bool on_open(const std::wstring& path, std::size_t include) = 0;

    // Returns a parser for that file, which has not parsed yet. Not asked for a file that the load refuses to read.
    virtual std::unique_ptr<NUVEK_2_18::parser::xml_stream_parser> make_parser(const std::wstring& path) = 0;

    // The map element at this position of the file opened last has been loaded.
    virtual void on_map(std::size_t position, const ustring8& name) = 0;

    // The file opened last is done. The elements before this position were taken.
    virtual void on_close(const map_error_t& result, std::size_t position) = 0;
};

// Loads as map_collection::load does.
void load_followed(map_collection& maps, const std::wstring& path, load_listener& listener);

}  // namespace data_mapper4
