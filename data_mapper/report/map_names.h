// Internal: the names of maps over all files of a check, and which of them are declared twice.
#pragma once

#include <cstddef>
#include <map>
#include <optional>

#include "data_mapper/report/load_recorder.h"
#include "data_mapper/report/report_writer.h"
#include "platform/xml_element.h"

namespace data_mapper4 {

class map_names
{
public:
    map_names(const load_recorder& load, const file_set& files) : m_load(load), m_files(files) {}

    // A map element with a name, at a position of a file.
    struct declaration
    {
        std::size_t reading;   // the first one of the file; no_number if load did not read it
        std::size_t position;  // of the element
        std::size_t next;      // the position of the next element
        bool has_content;      // whether it is loaded, and not skipped
        text_part name;
    };

    // Returns where the name was declared first if it is declared twice. As far as load got, that is for load to say.
    std::optional<text_part> add(const ustring8& name, const declaration& declared);

private:
    text_part name_part(const recorded_map& map) const;

    const load_recorder& m_load;
    const file_set& m_files;
    std::map<ustring8, text_part> m_first;
};

}  // namespace data_mapper4
