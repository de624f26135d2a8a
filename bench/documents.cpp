#include "documents.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <numeric>
#include <random>
#include <set>

namespace bench {

namespace {

using data_mapper4::map_type;

// Pseudo-random numbers, the same everywhere: the distributions of the standard differ between implementations.
class dice
{
public:
    explicit dice(std::size_t seed) : m_random(static_cast<std::uint32_t>(seed) * 2654435761U) {}
    std::size_t operator()(std::size_t sides) { return m_random() % sides; }

private:
    std::minstd_rand m_random;
};

const char* word(dice& roll)
{
    static constexpr std::array ascii = {
        "Time",   "Standard", "North", "of",    "Islands", "Dollar", "Republic", "Central", "42",     "07:31",
        "Office", "and",      "red",   "Saint", "green",   "net",    "total",    "CH",      "Street", "western",
        "Region", "new",      "line",  "price", "per",     "kg",     "Station",  "Upper",   "IC 6",   "Department"};
    static constexpr std::array foreign = {"Zürich", "Überweisung", "São Tomé", "Besançon", "大阪", "Łódź", "café"};
    static constexpr std::array references = {"R&amp;D", "&lt;none&gt;", "&quot;Nord&quot;", "caf&#xE9;", "A &amp; B"};
    if (roll(100) == 0) return references[roll(references.size())];
    return roll(20) == 0 ? foreign[roll(foreign.size())] : ascii[roll(ascii.size())];
}

// One to three words.
std::string short_value(dice& roll)
{
    std::string text = word(roll);
    for (std::size_t more = roll(3); more > 0; --more) text.append(" ").append(roll(8) == 0 ? "&amp;" : word(roll));
    return text;
}

// 2 to 60 bytes; short ones are more frequent.
std::string value(dice& roll)
{
    const std::size_t length = 2 + std::min(roll(59), roll(59));
    std::string text = word(roll);
    while (text.size() < length) {
        const std::string next = word(roll);
        if (text.size() + 1 + next.size() > 60) break;
        text.append(1, ' ').append(next);
    }
    return text;
}

std::string attribute(const std::string& name, const std::string& text)
{
    return " " + name + "=\"" + text + "\"";
}

// 10 to 25 bytes.
std::string dotted_name(std::size_t number)
{
    static constexpr const char* beginnings[] = {"menu.", "dialog.", "error.", "toolbar."};
    static constexpr const char* ends[] = {".title", ".text", ".tip", ".label"};
    return beginnings[number % 4] + number_at(number) + ends[number / 4 % 4];
}

// How items are named, and what their values are.
struct writing
{
    std::string (*name)(std::size_t number);
    std::string (*value)(dice& roll);
};
constexpr writing plain = {item_name, value};
constexpr writing dotted = {dotted_name, short_value};

// The attributes after the first. Each is sometimes left out, except in the element that names them for its map.
std::string attributes(const writing& by, std::initializer_list<const char*> names, dice& roll, bool& is_first)
{
    std::string text;
    for (const char* name : names) {
        const std::string each = attribute(name, by.value(roll));
        if (roll(16) != 0 || is_first) text += each;
    }
    is_first = false;
    return text;
}

// An item with its args. The same number always makes the same item, unless it names the map's attributes.
std::string entry(const writing& by, map_type type, std::size_t number, bool& is_first)
{
    dice roll(number * std::size(map_tags) + static_cast<std::size_t>(type));
    std::string text = "    <item" + attribute("name", by.name(number));
    if (type == data_mapper4::MT_COLLECTION)
        text += attributes(by, {"number", "unit", "text", "symbol"}, roll, is_first);
    text += "/>\n";
    if (type == data_mapper4::MT_COLLECTION) return text;
    std::size_t args = roll(50) == 0 ? 0 : 1;
    if (type == data_mapper4::MT_VECTOR) args = roll(6);
    if (type == data_mapper4::MT_VECTOR_COLLECTION) args = roll(5);
    for (; args > 0; --args) {
        text += "    <arg" + attribute("name", by.value(roll));
        if (type == data_mapper4::MT_VECTOR_COLLECTION) text += attributes(by, {"text", "time"}, roll, is_first);
        text += "/>\n";
    }
    return text;
}

std::string map_text(const writing& by, map_type type, const std::string& name, const std::vector<std::size_t>& numbers)
{
    std::string text = std::string("  <") + map_tags[type] + attribute("name", name) + ">\n";
    bool is_first = true;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        if (i % 100 == 50) text += "    <!-- checked against the list of last year -->\n";
        text += entry(by, type, numbers[i], is_first);
    }
    return text + "  </" + map_tags[type] + ">\n";
}

shape document(const std::string& maps)
{
    return {{"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<maps>\n" + maps + "</maps>\n"}};
}

// As many numbers as there are entries that fit into the size.
std::vector<std::size_t> numbers_of_size(const writing& by, map_type type, std::size_t size)
{
    std::vector<std::size_t> numbers;
    bool is_first = false;
    for (std::size_t used = 0; used < size; used += entry(by, type, numbers.back(), is_first).size()) {
        numbers.push_back(numbers.size());
    }
    return numbers;
}

void put_in_order(const writing& by, std::vector<std::size_t>& numbers, bool is_shuffled)
{
    if (is_shuffled) return std::shuffle(numbers.begin(), numbers.end(), std::mt19937(1));
    std::vector<std::string> names;
    for (const std::size_t number : numbers) names.push_back(by.name(number));
    std::sort(numbers.begin(), numbers.end(), [&](std::size_t a, std::size_t b) { return names[a] < names[b]; });
}

shape mixed_document(const writing& by, std::size_t size, bool is_shuffled)
{
    std::string maps;
    for (std::size_t i = 0; i < std::size(map_tags); ++i) {
        const auto type = static_cast<map_type>(i);
        auto numbers = numbers_of_size(by, type, size / std::size(map_tags));
        put_in_order(by, numbers, is_shuffled);
        maps += map_text(by, type, std::string(map_tags[i]) + "_of_names", numbers);
    }
    return document(maps);
}

}  // namespace

std::string cell::path() const
{
    if (kibibytes == 0) return example_document("world/world.xml");
    return written_once(name + ".xml",
                        [this] { return mixed_document(is_dotted ? dotted : plain, kibibytes << 10, is_shuffled); });
}

std::size_t cell::size() const
{
    if (kibibytes != 0) return std::filesystem::file_size(path());
    std::size_t size = 0;
    for (const auto& file : std::filesystem::recursive_directory_iterator(example_document("world"))) {
        if (file.path().extension() == ".xml") size += file.file_size();
    }
    return size;
}

const std::vector<cell>& load_cells()
{
    static const std::vector<cell> cells = {
        {"64KiB/sorted", 64, false},        {"64KiB/shuffled", 64, true},
        {"1MiB/sorted", 1024, false},       {"1MiB/shuffled", 1024, true},
        {"1MiB/dotted", 1024, false, true}, {"32MiB/sorted", 32768, false},
        {"32MiB/shuffled", 32768, true},    {"world"},
    };
    return cells;
}

std::string example_document(const std::string& name)
{
    return DATA_MAPPER4_EXAMPLES "/" + name;
}

std::string written_once(const std::string& name, const std::function<shape()>& make_content)
{
    static std::set<std::string> written;
    const std::filesystem::path path = std::filesystem::temp_directory_path() / "data_mapper4_bench" / name;
    if (!written.insert(name).second) return path.string();
    std::filesystem::create_directories(path.parent_path());
    // Renamed when it is complete, so that simultaneous runs do not read each other's incomplete files.
    const std::string part = path.string() + "." + std::to_string(std::random_device()());
    write(part, make_content());
    std::filesystem::rename(part, path);
    return path.string();
}

std::string table_document(map_type type, std::size_t items)
{
    return written_once(std::string(map_tags[type]) + "_" + std::to_string(items) + ".xml", [=] {
        std::vector<std::size_t> numbers(items);
        std::iota(numbers.begin(), numbers.end(), std::size_t{0});
        put_in_order(plain, numbers, true);
        return document(map_text(plain, type, "table", numbers));
    });
}

// A prefix that many names share, as in real files, and four digits that differ for every number: the factor has no
// divisor in common with their count.
std::string item_name(std::size_t number)
{
    static constexpr const char* beginnings[4][6] = {
        {"", "", "CH-", "US-", "id_", "AD"},
        {"order.", "label_", "Zone ", "Europe/", "GB", "price.net."},
        {"W. Europe ", "city of ", "région ", "Müller ", "東京 ", "colour_scheme."},
        {"menu.recent.", "title_of_section_", "Africa/", "America/Argentina/", "shipping.address.",
         "N. Central Standard "}};
    constexpr std::size_t base = 36;
    std::size_t digits = number * 1000003 % (base * base * base * base);
    const std::size_t which = dice(number + 1)(24);
    std::string name = beginnings[which / 6][which % 6];
    for (int i = 0; i < 4; ++i, digits /= base) name += "0123456789abcdefghijklmnopqrstuvwxyz"[digits % base];
    return name;
}

// Differs from a real name only at its end, so that a search goes as deep.
std::string missing_name(std::size_t number)
{
    std::string name = item_name(number);
    name.back() = 'Z';
    return name;
}

}  // namespace bench
