#include "data_mapper/report/xml_vocabulary.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include "data_mapper/map_kind.h"
#include "data_mapper/report/nearest_name.h"

namespace data_mapper4 {

namespace {

// What to write instead of the entities that people know from elsewhere.
struct known_entity
{
    std::string_view name;
    int code_point;
};

constexpr known_entity known_entities[] = {
    {"nbsp", 160},   {"copy", 169},   {"reg", 174},     {"deg", 176},    {"middot", 183}, {"times", 215},
    {"euro", 8364},  {"trade", 8482}, {"hellip", 8230}, {"ndash", 8211}, {"mdash", 8212}, {"bull", 8226},
    {"lsquo", 8216}, {"rsquo", 8217}, {"ldquo", 8220},  {"rdquo", 8221}, {"laquo", 171},  {"raquo", 187},
    {"auml", 228},   {"ouml", 246},   {"uuml", 252},    {"Auml", 196},   {"Ouml", 214},   {"Uuml", 220},
    {"szlig", 223},  {"eacute", 233}, {"egrave", 232},  {"agrave", 224}, {"ccedil", 231}, {"ntilde", 241},
};

constexpr std::string_view known_encodings[] = {"utf-8", "utf-16", "utf-16le", "utf-16be", "iso-8859-1", "us-ascii"};

ustring8 lower_case(std::string_view text)
{
    ustring8 lower(text);
    for (char& each : lower) each = each >= 'A' && each <= 'Z' ? static_cast<char>(each | 0x20) : each;
    return lower;
}

}  // namespace

bool is_known_tag(std::string_view tag)
{
    return tag == "maps" || tag == "include" || tag == "item" || tag == "arg" || find_kind(tag) != nullptr;
}

int code_point_of_entity(std::string_view name)
{
    const auto* const known = std::find_if(std::begin(known_entities), std::end(known_entities),
                                           [&](const known_entity& each) { return each.name == name; });
    return known == std::end(known_entities) ? 0 : known->code_point;
}

bool is_known_encoding(std::string_view name)
{
    return std::count(std::begin(known_encodings), std::end(known_encodings), lower_case(name)) != 0;
}

ustring8 nearest_encoding(std::string_view name)
{
    const ustring8 lower = lower_case(name);
    if (lower.find("latin") != ustring8::npos) return "iso-8859-1";
    const std::vector<ustring8> known(std::begin(known_encodings), std::end(known_encodings));
    return ustring8(nearest_name(lower, known));
}

}  // namespace data_mapper4
