// Internal: checks the content of one file, element by element, and goes on after a fault wherever it can.
//
// The elements of a document are seen as they are nested, while load takes them one after the other. An element in the
// wrong place is one finding; what it contains is then checked as if it were in the right place, or not at all if nobody
// can know what it was meant to be.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "data_mapper/report/map_content.h"
#include "data_mapper/report/map_names.h"

namespace data_mapper4 {

class content_checker
{
public:
    // `reading` is the number of the file's first reading; no_number if load did not read it.
    content_checker(const file_findings& findings, const xml_document& document, std::size_t reading, map_names& names);

    // Checks on up to the next include. Returns false at the end of the file.
    bool next();

    // That include: its position and place, the path as written, and the place of that.
    std::size_t include_position() const { return m_position; }
    const ustring8& include_path() const { return m_include_path; }
    std::string_view include_part() const { return m_include_part; }
    std::string_view include_tag() const { return tag_part(m_element); }
    file_findings& findings() { return m_findings; }

    // Whether the file has declared a map so far.
    bool declares_maps() const { return m_declares_maps; }

private:
    // What an element is taken for.
    enum class role
    {
        document,
        root,
        map,
        item,
        include,
        unknown,  // what it contains is of no interest, except maps and includes
    };

    struct open_element
    {
        role taken_as = role::document;
        std::string_view tag = {};
        std::unique_ptr<map_content> content = {};  // of a map
        map_content* map = nullptr;                 // the innermost map, inside which only items and args are open
        bool is_left_open = false;                  // whether its end tag is missing
        bool is_content_known = false;              // whether there is a finding already that it must not have content
    };

    void take();
    void close();
    role check_root();
    role check_in_root();
    role check_in_map();
    role check_in_item();
    role check_in_include();
    role check_in_unknown();
    role check_map();
    role check_include();
    role check_item_or_arg();
    role add_unknown(const ustring8& hint);
    void add_misplaced(rule broken, const ustring8& message, const ustring8& hint);
    void check_name(const ustring8& name);
    bool is_left_open() const;
    open_element& inside() { return m_open.back(); }

    file_findings m_findings;
    const xml_document& m_document;
    std::size_t m_reading;
    map_names& m_names;
    std::vector<std::size_t> m_left_open;
    std::vector<open_element> m_open;
    xml_element m_element;       // the one being checked
    std::size_t m_position = 0;  // its position
    std::size_t m_next = 0;      // the position of the next one
    bool m_is_include = false;
    ustring8 m_include_path;
    std::string_view m_include_part;
    std::unique_ptr<map_content> m_content;  // of the map element being checked
    bool m_is_outside_known = false;         // whether there is a finding already of an item outside maps
    bool m_declares_maps = false;
    bool m_is_root_wrong = false;
    bool m_is_at_end = false;
};

}  // namespace data_mapper4
