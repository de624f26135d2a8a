// Writes four files of maps as the bytes of a fuzzer's input say, well-formed most of the time.
#pragma once

#include <array>
#include <string>
#include <string_view>

namespace map_author {

using std::string;

constexpr std::size_t file_count = 4;
using documents = std::array<string, file_count>;

const std::array<string, 8> map_names = {"a", "b", "c", "d", "e", "f", "ab", "\xC3\xA9"};
const std::array<string, 6> item_names = {"k", "l", "m", "kk", "a", "name"};
const std::array<string, 4> attributes = {"u", "v", "w", "Name"};
const std::array<string, 4> values = {"1", "2", "", "k"};

using choices = std::array<const char*, 16>;
constexpr choices openings = {"<maps>",
                              "<?xml version='1.0'?><maps>",
                              "\n<maps>",
                              "<!--c--><maps>",
                              "<!DOCTYPE maps><maps>",
                              "<maps>text",
                              "\xEF\xBB\xBF<maps>",
                              "<?xml version='1.0' encoding='ISO-8859-1'?><maps>",
                              "<maps >\n",
                              "<maps a='1'>",
                              "<map>",
                              "",
                              "<maps/>",
                              "<maps><maps/>",
                              " <?xml version='1.0'?><maps>",
                              "<maps><maps>"};
constexpr choices maps_inside = {"<map name='a'/>",
                                 "<map/>",
                                 "<vector_map></vector_map>",
                                 "<map name=''><item name='k'/></map>",
                                 "<maps/>",
                                 "<map><item name='k'/></map>",
                                 "<map name='a' b=''/>",
                                 "<map id='a'/>",
                                 "<map name='z'>text</map>",
                                 "<x name='z'/>",
                                 "<collection_map name='a'><item name='k'/></collection_map>",
                                 "<maps b=''/>",
                                 "<x/>",
                                 "<include file='none'/>",
                                 "<include/>",
                                 "<include file='.' a=''/>"};
constexpr choices items_inside = {"<item/>",
                                  "<item name=''/>",
                                  "<item id='k'/>",
                                  "<item name='k'>text</item>",
                                  "<item name='k'><arg name='1'/></item>",
                                  "<arg/>",
                                  "<arg name=''/>",
                                  "<arg id='1'/>",
                                  "<arg name='1'>text</arg>",
                                  "<arg name='1'><arg name='2'/></arg>",
                                  "<item name='m' name='m'/>",
                                  "<item u='1' name='k'/>",
                                  "<arg u='1' name='1'/>",
                                  "<other/>",
                                  "<item name='m'> </item>",
                                  "<map name='f'><item name='k'/></map>"};
constexpr choices texts = {"\n",    "\n\n",     " ",     "\r\n",          "text",          "&amp;",
                           "&#10;", "<!--c-->", "<?p?>", "<![CDATA[x]]>", "<![CDATA[ ]]>", "&bad;",
                           "<",     "]]>",      "\xFF",  "</maps>"};
constexpr std::array<const char*, 4> kinds = {"map", "collection_map", "vector_map", "vector_collection_map"};

class author
{
public:
    // The numbers of the files follow the first one's; `folder` is where they are, with backslashes.
    author(string folder, int first_number) : m_folder(std::move(folder)), m_first_number(first_number) {}

    // A byte is a step: its upper half says of which kind, its lower half chooses.
    documents write(std::string_view steps)
    {
        text() = openings[0];
        for (const char each : steps) {
            take(static_cast<unsigned char>(each) >> 4, static_cast<unsigned char>(each) & 15U);
        }
        close();
        return m_files;
    }

private:
    static constexpr int most_includes = 5;  // what a cycle leads to grows with their factorial

    string& text() { return m_files[m_at]; }

    void take(unsigned step, unsigned choice)
    {
        switch (step) {
            case 0:
                return start_file(openings[choice]);
            case 1:
            case 2:
                return open_map(kinds[choice & 3], map_names[choice >> 2 | (step == 1 ? 0 : 4)]);
            case 3:
                return choice < 14 ? close_map() : cut(choice == 14 ? "" : "<item");
            case 4:
            case 5:
            case 6:
                return add(choice < 8 ? "<item" : "\n<item", item_names[choice % 6]);
            case 7:
            case 8:
            case 9:
                return add(choice < 8 ? "<arg" : "\n<arg", values[choice & 3]);
            case 10:
                m_attributes += " " + attributes[choice & 3] + "='" + values[choice >> 2] + "'";
                return;
            case 11:
            case 12:
                return include(choice & 3, choice >> 2);
            default:
                text() += step == 13 ? items_inside[choice] : step == 14 ? maps_inside[choice] : texts[choice];
        }
    }

    void start_file(const char* opening)
    {
        close();
        if (m_at + 1 < file_count) ++m_at;
        text() = opening;
        m_is_cut = false;
    }

    void close()
    {
        close_map();
        if (!m_is_cut) text() += "</maps>";
    }

    void open_map(const char* kind, const string& name)
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

    // What was opened in the file stays open.
    void cut(const char* last)
    {
        text() += last;
        m_is_cut = true;
    }

    void add(const char* tag, const string& name)
    {
        text() += tag + (" name='" + name) + "'" + m_attributes + "/>";
        m_attributes.clear();
    }

    void include(unsigned file, unsigned spelling)
    {
        const std::array<string, 4> folders = {"", "../fd/", m_folder, "..\\fd\\"};
        if (++m_includes > most_includes) return;
        close_map();
        text() +=
            "<include file='" + folders[spelling] + std::to_string(m_first_number + static_cast<int>(file)) + "'/>";
    }

    string m_folder;
    int m_first_number;
    documents m_files;
    std::size_t m_at = 0;
    string m_map;         // the tag of the map that is open
    string m_attributes;  // for the next item or arg
    int m_includes = 0;
    bool m_is_cut = false;
};

}  // namespace map_author
