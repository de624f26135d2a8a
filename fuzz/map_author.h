// Writes four files of maps from the bytes of a fuzzer's input, well-formed most of the time.
#pragma once

#include <algorithm>
#include <array>
#include <numeric>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace map_author {

using std::string;
using texts = std::vector<string>;

constexpr std::size_t file_count = 4;
using documents = std::array<string, file_count>;

// Splits a list at each `|`.
inline texts split(std::string_view list)
{
    texts parts(1);
    for (const char each : list) {
        if (each == '|')
            parts.emplace_back();
        else
            parts.back() += each;
    }
    return parts;
}

const texts file_names = split("200|201|202|203");  // numbers of memory files
const texts folders = split("|../fd/|\\proc\\self\\fd\\|..\\fd\\");
const texts map_names = split("a|b|c|d|e|f|ab|\xC3\xA9");
const texts item_names = split("k|l|m|kk|a|name");
const texts attributes = split("u|v|w|Name");
const texts values = split("1|2||k");
const texts kinds = split("map|collection_map|vector_map|vector_collection_map");
const texts openings = split(
    "<maps>|<?xml version='1.0'?><maps>|\n<maps>|<!--c--><maps>|<!DOCTYPE maps><maps>|<maps>text|\xEF\xBB\xBF<maps>|"
    "<?xml version='1.0' encoding='ISO-8859-1'?><maps>|<maps >\n|<maps a='1'>|<map>||<maps/>|<maps><maps/>|"
    " <?xml version='1.0'?><maps>|<maps><maps>");
const texts maps_inside = split(
    "<map name='a'/>|<map/>|<vector_map></vector_map>|<map name=''><item name='k'/></map>|<maps/>|"
    "<map><item name='k'/></map>|<map name='a' b=''/>|<map id='a'/>|<map name='z'>text</map>|<x name='z'/>|"
    "<collection_map name='a'><item name='k'/></collection_map>|<maps b=''/>|<x/>|<include file='none'/>|<include/>|"
    "<include file='.' a=''/>");
const texts items_inside = split(
    "<item/>|<item name=''/>|<item id='k'/>|<item name='k'>text</item>|<item name='k'><arg name='1'/></item>|<arg/>|"
    "<arg name=''/>|<arg id='1'/>|<arg name='1'>text</arg>|<arg name='1'><arg name='2'/></arg>|"
    "<item name='m' name='m'/>|<item u='1' name='k'/>|<arg u='1' name='1'/>|<other/>|<item name='m'> </item>|"
    "<map name='f'><item name='k'/></map>");
const texts other_texts =
    split("\n|\n\n| |\r\n|text|&amp;|&#10;|<!--c-->|<?p?>|<![CDATA[x]]>|<![CDATA[ ]]>|&bad;|<|]]>|\xFF|</maps>");
const texts endings = split("|<item");
// The names in a batch: a short one, two that differ only after many bytes, and one with references.
const texts beginnings =
    split("k|a beginning as long as two vectors|a beginning as long as two vectorz|&#xE9;&lt;a&#x62;c");

class author
{
public:
    // Each byte is a step: its upper half is the kind of step, its lower half chooses among variants.
    documents write(std::string_view steps)
    {
        text() = openings[0];
        for (const char each : steps)
            take(static_cast<unsigned char>(each) >> 4, static_cast<unsigned char>(each) & 15);
        close();
        return m_files;
    }

private:
    static constexpr int most_includes = 5;               // the files read in a cycle grow with their factorial
    static constexpr std::size_t most_in_batches = 1200;  // items

    string& text() { return m_files[m_at]; }

    void take(unsigned step, unsigned choice)
    {
        const string line_end = choice < 8 ? "" : "\n";
        if (step == 0) return start_file(openings[choice]);
        if (step <= 2) return open_map(kinds[choice & 3], map_names[choice >> 2 | (step == 1 ? 0 : 4)]);
        if (step == 3 && choice < 14) return close_map();
        if (step <= 5) return add(line_end + "<item", item_names[choice % 6]);
        if (step == 6) return add_batch(3 + choice * choice * choice / 3);
        if (step <= 9) return add(line_end + "<arg", values[choice & 3]);
        if (step == 10) return add_attribute(choice & 3, choice >> 2);
        if (step <= 12) return include(choice & 3, choice >> 2);
        m_is_cut = m_is_cut || step == 3;  // what is open in the file stays open
        text() += step == 3 ? endings[choice - 14]
                            : (step == 13   ? items_inside
                               : step == 14 ? maps_inside
                                            : other_texts)[choice];
    }

    void start_file(const string& opening)
    {
        close();
        m_at = std::min(m_at + 1, file_count - 1);
        text() = opening;
        m_is_cut = false;
    }

    void close()
    {
        close_map();
        if (!m_is_cut) text() += "</maps>";
    }

    void open_map(const string& kind, const string& name)
    {
        close_map();
        m_map = kind;
        text() += "<" + m_map + " name='" + name + "'>";
    }

    void close_map()
    {
        if (!m_map.empty() && !m_is_cut) text() += "</" + m_map + ">";
        m_map.clear();
    }

    void add(const string& tag, const string& name)
    {
        text() += tag + " name='" + name + "'" + m_attributes + "/>";
        m_attributes.clear();
    }

    // Adds to the next item or arg.
    void add_attribute(std::size_t name, std::size_t value)
    {
        m_attributes += " " + attributes[name] + "='" + values[value] + "'";
    }

    // Items with their attributes and args, shuffled; some batches have a duplicate name or another element among them.
    void add_batch(std::size_t size)
    {
        m_in_batches += size;
        if (m_in_batches > most_in_batches) return;
        std::mt19937 random(static_cast<unsigned>(text().size()));
        const auto below = [&](std::size_t limit) { return random() % limit; };
        std::vector<std::size_t> numbers(size);
        std::iota(numbers.begin(), numbers.end(), 0);
        for (std::size_t& number : numbers) std::swap(number, numbers[below(size)]);
        if (below(4) == 0) numbers[below(size)] = numbers[below(size)];
        const std::size_t intruder = below(3) == 0 ? below(size) : size;
        const string& beginning = beginnings[below(beginnings.size())];
        for (std::size_t i = 0; i < size; ++i) {
            if (i == intruder) text() += (below(2) == 0 ? items_inside : other_texts)[below(16)];
            if (m_map == "collection_map") add_attributes(i == 0 ? 15 : below(16));
            add(below(4) == 0 ? "\n<item" : "<item", beginning + std::to_string(numbers[i]));
            for (std::size_t args = m_map == "map" ? below(2) : m_map[0] == 'v' ? below(4) : 0; args != 0; --args) {
                if (m_map == "vector_collection_map") add_attributes(i == 0 ? 15 : below(16));
                add("<arg", "value" + std::to_string(below(50)));
            }
        }
    }

    // The attributes whose bits are set. The first item of a batch has all of them, so that later ones may have any.
    void add_attributes(std::size_t bits)
    {
        for (std::size_t i = 0; i < attributes.size(); ++i) {
            if ((bits >> i & 1) != 0) add_attribute(i, (bits + i) & 3);
        }
    }

    void include(unsigned file, unsigned spelling)
    {
        if (++m_includes > most_includes) return;
        close_map();
        text() += "<include file='" + folders[spelling] + file_names[file] + "'/>";
    }

    documents m_files;
    std::size_t m_at = 0;
    string m_map;         // the tag of the map that is open
    string m_attributes;  // for the next item or arg
    int m_includes = 0;
    std::size_t m_in_batches = 0;  // items
    bool m_is_cut = false;
};

}  // namespace map_author
