// The four kinds of table: how each reads the content of its map.
#include <gtest/gtest.h>

#include "data_mapper/attrib_schema.h"
#include "data_mapper/map_collection.h"
#include "documents.h"

using namespace data_mapper4;
using documents::check;
using documents::parsed;
using documents::rendered;

namespace {

template <class table>
struct opened : table
{
    using table::begin;
    using table::empty;
    using table::end;
    using table::m_error;
    using table::m_items;
    std::string schema() const { return ""; }
};

struct opened_collection : opened<collection_map_t>
{
    using collection_map_t::get_attrib;
    using collection_map_t::get_attribs;
    std::string schema() const { return ' ' + rendered(m_attrib_names); }
};

struct opened_vector_collection : opened<vector_collection_map_t>
{
    using vector_collection_map_t::get_args_vector;
    std::string schema() const { return ' ' + rendered(m_attrib_names); }
};

// A document with the root, the map element and the first element of the content on line 1; each further element has a
// line of its own. "$" at the end of the content is the end of the input; otherwise the map's end tag follows.
std::string document(std::string text)
{
    const bool is_cut = !text.empty() && text.back() == '$';
    if (is_cut) text.pop_back();
    for (std::size_t at = 0; (at = text.find("><", at)) != std::string::npos;) text.insert(++at, "\n");
    return "<maps><map name='m'>" + text + (is_cut ? "" : "\n</map></maps>");
}

// Loads content into a table: code and line | schema and items | the tag of the next node.
template <class table>
std::string load(table& map, xml_stream_parser& parser)
{
    map_error_t error = map.load("m", parser);
    EXPECT_TRUE(error.type() == map.m_error.type() && error.line() == map.m_error.line() && map.id() == "m");
    std::string line = map_collection().map_error_as_string(error) + ' ' + std::to_string(error.line()) + " |";
    line += map.schema();
    for (const auto& item : map.m_items.read()) line += ' ' + rendered(item);
    return line + " | " + (parser.node_queue_empty() ? "end" : parser.node_queue_front().tag);
}

template <class table>
std::string load(table& map, const std::string& content)
{
    return load(map, *parsed(document(content), 2));
}

template <class table>
std::string load_new(const std::string& content)
{
    table map;
    return load(map, content);
}

// An item with its args, on a line of its own. A faulty one has a faulty arg or, without args, an unknown attribute.
struct row
{
    std::string raw_name;
    std::string name;
    unsigned args;
    bool is_faulty;
};

enum class order
{
    sorted,
    nearly_sorted,
    shuffled,
};

enum class event
{
    none,
    repeated_name,
    no_name,
    fault,  // after which its name occurs again
};

std::vector<row> random_rows(std::mt19937& random, std::size_t size, order wanted)
{
    const std::string zs(random() % 50, 'z');
    const std::pair<std::string, std::string> begins[] = {{"", ""},
                                                          {"8 bytes:", "8 bytes:"},
                                                          {"twenty-four bytes alike:", "twenty-four bytes alike:"},
                                                          {"&#233;", "\xC3\xA9"},
                                                          {"\xC3\xA9", "\xC3\xA9"},
                                                          {"&lt;" + zs, '<' + zs},
                                                          {zs, zs}};
    std::vector<row> rows;
    for (std::size_t i = 0; i < size; ++i) {
        const auto& [raw, begin] = begins[random() % std::size(begins)];
        const std::string number = std::to_string(i * 7919 % 1000003);
        rows.push_back({raw + number, begin + number, static_cast<unsigned>(random() % 3), false});
    }
    if (wanted != order::shuffled) {
        std::sort(rows.begin(), rows.end(), [](const row& a, const row& b) { return a.name < b.name; });
    }
    for (std::size_t i = 0; wanted == order::nearly_sorted && i <= size / 1000; ++i) {
        std::swap(rows[random() % size], rows[random() % size]);
    }
    rows[0].args = 2;
    return rows;
}

void add_event(std::mt19937& random, std::vector<row>& rows, event wanted)
{
    const std::size_t place = 1 + random() % (rows.size() - 1);
    row other = rows[random() % place];
    if (wanted == event::repeated_name && other.raw_name[0] > 0 && other.raw_name[0] != '&') {
        other.raw_name = "&#" + std::to_string(other.raw_name[0]) + ';' + other.raw_name.substr(1);
    }
    if (wanted == event::no_name) other.raw_name = other.name = "";
    if (wanted == event::fault) {
        rows.push_back(rows[place]);
        rows[place].is_faulty = true;
    } else if (wanted != event::none) {
        rows.insert(rows.begin() + static_cast<std::ptrdiff_t>(place), other);
    }
}

// How a kind of map has rows. An attribute is that of the args, or of the item if there are none.
struct dialect
{
    map_type type;
    unsigned most_args;
    std::string attribute;

    unsigned args(const row& each) const { return std::min(most_args, each.args); }

    std::string document(const std::vector<row>& rows) const
    {
        std::string text = "<maps><map name='m'>";
        for (const row& each : rows) {
            const bool has_value = most_args == 0 && each.args != 0 && !each.is_faulty;
            text += "<item name='" + each.raw_name + "'" + (has_value ? attribute : "");
            text += most_args == 0 && each.is_faulty ? " c=''/>" : "/>";
            for (unsigned i = each.is_faulty && most_args == 1 ? 1 : 0; i < args(each); ++i) {
                text += "<arg name='x'" + attribute + "/>";
            }
            text += most_args != 0 && each.is_faulty ? "<arg/>\n" : "\n";
        }
        return text + "<x/></map></maps>";
    }

    std::string value(const row& each) const
    {
        if (type == MT_SIMPLE) return args(each) == 0 ? "" : "x";
        if (type == MT_COLLECTION) return '(' + each.name + (each.args == 0 ? ",)" : ",1)");
        return rendered(std::vector<std::string>(args(each), type == MT_VECTOR ? "x" : "(x,1)"));
    }

    // What adding the rows one by one results in, rendered as by load(), and the line of the next node.
    std::string expected(const std::vector<row>& rows) const
    {
        std::map<std::string, std::string> items;
        bool is_faulty = false;
        const auto result = [&](const std::string& outcome, const std::string& next) {
            std::string text = outcome + (attribute.empty() ? " |" : " | (name,b)");
            for (const auto& item : items) text += ' ' + rendered(item);
            return text + " | " + next;
        };
        for (std::size_t i = 0; i < rows.size(); ++i) {
            const row& each = rows[i];
            const std::string line = std::to_string(i + 1);
            const std::string next = (i + 1 == rows.size() ? "x@" : "item@") + std::to_string(i + 2);
            const bool has_arg = most_args != 0 && (args(each) != 0 || each.is_faulty);
            const std::string own_arg = has_arg ? "arg@" + line : next;
            if (items.count(each.name) != 0) return result("duplicate_item " + line, own_arg);
            if (each.name.empty()) return result("invalid_format " + line, own_arg);
            if (each.is_faulty && most_args == 1) return result("invalid_format " + line, next);
            if (each.is_faulty && most_args == 0) return result("collection_error 0", next);
            is_faulty = each.is_faulty || (is_faulty && (type == MT_VECTOR || args(each) == 0));
            if (type == MT_VECTOR || !is_faulty) items[each.name] = value(each);
        }
        const std::string last = std::to_string(rows.size() + (type == MT_VECTOR_COLLECTION ? 1 : 0));
        return result((is_faulty ? "invalid_format " : "no_error ") + (type == MT_COLLECTION ? "0" : last),
                      "x@" + std::to_string(rows.size() + 1));
    }
};

template <class table>
void check_batches(const dialect& kind)
{
    std::mt19937 random(1);
    // In order, 1,024 items and values are a batch; otherwise 16,384, or half of what was read before.
    for (const std::size_t size : {3u, 20u, 500u, 511u, 512u, 1100u, 8191u, 8193u, 40000u}) {
        for (const order wanted : {order::sorted, order::nearly_sorted, order::shuffled}) {
            for (const event happening : {event::none, event::repeated_name, event::no_name, event::fault}) {
                // A large table is loaded with one of the events.
                if (size > 5000 && static_cast<unsigned>(happening) != random() % 4) continue;
                std::vector<row> rows = random_rows(random, size, wanted);
                if (happening != event::none) add_event(random, rows, happening);
                const auto parser = parsed(kind.document(rows), 2);
                table map;
                std::string outcome = load(map, *parser);
                outcome += '@' + std::to_string(parser->node_queue_front().line);
                const std::string expected = kind.expected(rows);
                EXPECT_TRUE(outcome == expected)
                    << size << ' ' << static_cast<int>(wanted) << outcome.substr(0, 500) << "\n"
                    << expected.substr(0, 500);
                const table copy = map;
                map.clear();
                EXPECT_TRUE(map.empty() && map.begin() == map.end() && table(copy).empty() == (size == 0));
            }
        }
    }
}

}  // namespace

TEST(Tables, ASimpleMapReadsItemsAndTheirTexts)
{
    check(
        {
            {"no_error 0 | | end", {"$"}},
            {"no_error 0 | | x", {"<x/>"}},
            {"no_error 0 | | Item", {"<Item name='a'/>"}},
            {"no_error 3 | a=x b= | x", {"<item name='a'/><arg name='x'/><item name='b'/><x/>"}},
            {"no_error 1 | a=x | end", {"<item name='a'/><arg name='x'/>$"}},
            {"no_error 1 | a= | map",
             {"<item name='a'/><arg name=''/>", "<item name='a'/>", "<item name='a'> \n</item>"}},
            {"no_error 1 | a=x | arg", {"<item name='a'/><arg name='x'/><arg name='y'/>"}},
            {"no_error 4 | B= b= bb= Ä= | map", {"<item name='b'/><item name='B'/><item name='bb'/><item name='Ä'/>"}},
            {"invalid_format 1 | | end", {"<item name='a'/>$"}},
            {"duplicate_item 2 | a= | arg", {"<item name='a'/><item name='a'/><arg name='x'/>"}},
            {"duplicate_item 3 | <= > = | arg",
             {"<item name='&lt;'/><item name='> '/><item name='&#60;'/><arg name='x'/>"}},
            {"duplicate_item 5 | abcdefgh= abcdefghi= b= z= | map",
             {"<item name='z'/><item name='b'/><item name='abcdefgh'/><item name='abcdefghi'/><item "
              "name='abcdefgh'/>"}},
            // one thing wrong with an item, or with an arg
            {"invalid_format 1 | | x",
             {"<item name=''/><x/>", "<item/><x/>", "<item Name='a'/><x/>", "<item name='a' id='1'/><x/>",
              "<item name='a'>t</item><x/>", "<item name='a'/><arg/><x/>", "<item name='a'/><arg nam='x'/><x/>",
              "<item name='a'/><arg name='x' b=''/><x/>", "<item name='a'/><arg name='x'>t</arg><x/>"}},
            // an arg inside its item: the item's end tag is an item without a name
            {"invalid_format 3 | a=x | map", {"<item name='a'><arg name='x'/></item>"}},
        },
        load_new<opened<map_t>>);
}

TEST(Tables, AVectorMapKeepsReadingAfterAFaultyArg)
{
    check(
        {
            {"no_error 0 | | end", {"$"}},
            {"no_error 4 | a=(x,y) b=() | x", {"<item name='a'/><arg name='x'/><arg name='y'/><item name='b'/><x/>"}},
            {"no_error 3 | a=(x,x) | map", {"<item name='a'/><arg name='x'/><arg name='x'/>"}},
            {"no_error 2 | a=(x) | end", {"<item name='a'/><arg name='x'/>$"}},
            {"invalid_format 1 | | end", {"<item name='a'/>$"}},
            {"duplicate_item 2 | a=() | arg", {"<item name='a'/><item name='a'/><arg name='x'/>"}},
            {"invalid_format 2 | a=() | map",
             {"<item name='a'/><arg name=''/>", "<item name='a'/><arg name='x' b=''/>", "<item name='a'/><arg/>",
              "<item name='a'/><arg name='x'>t</arg>"}},
            {"invalid_format 3 | a=(x) | arg", {"<item name='a'/><arg name='x'/><arg name=''/><arg name='y'/>"}},
            {"invalid_format 4 | a=() b=(z) | map", {"<item name='a'/><arg name=''/><item name='b'/><arg name='z'/>"}},
            {"duplicate_item 3 | a=() | map", {"<item name='a'/><arg name=''/><item name='a'/>"}},
        },
        load_new<opened<vector_map_t>>);
}

TEST(Tables, ACollectionMapReadsRowsByAttributeName)
{
    check(
        {
            {"no_error 0 | () | end", {"$"}},
            {"no_error 0 | () | x", {"<x/>"}},
            {"no_error 0 | (name,c,s) a=(a,r,4) b=(b,,5) | map",
             {"<item name='a' c='r' s='4'/><item name='b' s='5'/>"}},
            {"no_error 0 | (name,c,s) a=(a,,4) b=(b,6,5) | map",
             {"<item name='a' c='' s='4'/><item name='b' s='5' c='6'/>"}},
            {"no_error 0 | (name,c) a=(a,1) | end", {"<item name='a' c='1'/>$"}},
            {"no_error 0 | (name,c) a=(a,1) | arg", {"<item name='a' c='1'/><arg name='x'/><item name='b'/>"}},
            {"collection_error 0 | (name,c) a=(a,1) | map",
             {"<item name='a' c='1'/><item name='b' c='2' w='2'/>", "<item name='a' c='1'/><item name='b' w='2'/>"}},
            {"collection_error 0 | (name) a=(a) | map", {"<item name='a'/><item name='b' c='2'/>"}},
            {"duplicate_item 2 | (name) a=(a) | map", {"<item name='a'/><item name='a'/>"}},
            {"invalid_format 1 | () | map",
             {"<item c='red' name='a'/>", "<item name='' c='red'/>", "<item/>", "<item name='a' c='1'>x</item>"}},
        },
        load_new<opened_collection>);
}

TEST(Tables, AVectorCollectionMapForgetsAFaultAtTheNextSoundArg)
{
    const std::string good = "<item name='a'/><arg name='x' c='1'/>";
    const std::string dropped = good + "<arg name='y' d='2'/>";
    check(
        {
            {"no_error 0 | () | end", {"$"}},
            {"no_error 1 | () | x", {"<x/>"}},
            {"no_error 4 | (name,c) a=((x,1),(y,)) | x", {good + "<arg name='y'/><x/>"}},
            {"no_error 2 | () a=() | x", {"<item name='a'/><x/>"}},
            {"invalid_format 1 | () | end", {"<item name='a'/>$"}},
            {"no_error 0 | (name,c) a=((x,1)) | end", {good + "$"}},
            {"invalid_format 1 | () | arg", {"<item name='a' c='1'/><arg name='x'/>"}},
            {"invalid_format 4 | (name,c) a=((x,1)) | end", {good + "<item name='b'/><arg c='1' name='y'/>$"}},
            {"duplicate_item 3 | (name,c) a=((x,1)) | arg", {good + "<item name='a'/><arg name='y'/>"}},
            {"invalid_format 4 | (name,c) | arg", {good + "<arg c='2'/><arg name='z'/><x/>"}},
            {"invalid_format 4 | (name,c) | x",
             {good + "<arg name=''/><x/>", good + "<arg/><x/>", good + "<arg name='y'>t</arg><x/>"}},
            {"collection_error 4 | (name,c) | x", {dropped + "<x/>"}},
            {"collection_error 0 | (name,c) | end", {dropped + "$"}},
            {"no_error 6 | (name,c) b=((z,3)) | x", {dropped + "<item name='b'/><arg name='z' c='3'/><x/>"}},
            {"collection_error 5 | (name,c) | x", {dropped + "<item name='b'/><x/>"}},
            {"no_error 0 | (name,c) c=((z,)) | end", {dropped + "<item name='b'/><item name='c'/><arg name='z'/>$"}},
            {"invalid_format 4 | (name,c) | map", {dropped + "<item name=''/>"}},
            {"invalid_format 3 | (name) a=((x)) | map", {"<item name='a'><arg name='x'/></item>"}},
        },
        load_new<opened_vector_collection>);
}

TEST(Tables, AddTheItemsOfASecondLoad)
{
    opened<map_t> simple;
    EXPECT_EQ(load(simple, "<item name='a'/><arg name='x'/>"), "no_error 1 | a=x | map");
    EXPECT_EQ(load(simple, "<x/><item name='b'/>"), "no_error 1 | a=x | x") << "the line stays";
    EXPECT_EQ(load(simple, "<item name='b'/><item name='a'/>"), "duplicate_item 2 | a=x b= | map");
    EXPECT_EQ(load(simple, "<item name='c'/>"), "no_error 1 | a=x b= c= | map") << "the fault is past";
    load(simple, "<item/>");
    simple.clear();
    EXPECT_TRUE(simple.empty() && simple.id() == "m" && simple.m_error.type() == map_error_t::invalid_format);

    opened_collection collection;
    load(collection, "<item name='a' c='1'/>");
    EXPECT_EQ(load(collection, "<item name='b' d='1'/>"), "duplicate_attrib 0 | (name,c,name,d) a=(a,1) | map");
    // The row is shorter than the schema now.
    ustring8 value = "before";
    EXPECT_TRUE(collection.get_attrib("a", "d", value) && value.empty());
    std::map<ustring8, ustring8> attribs;
    EXPECT_TRUE(collection.get_attribs("a", attribs));
    EXPECT_EQ(attribs, (std::map<ustring8, ustring8>{{"name", "a"}, {"c", "1"}, {"d", ""}}));
    collection.clear();
    EXPECT_EQ(load(collection, "<item name='a'/>"), "duplicate_attrib 0 | (name,c,name,d,name) | map");
    EXPECT_EQ(load(collection, "<x/>"), "no_error 0 | (name,c,name,d,name) | x");

    opened<vector_map_t> vector;
    load(vector, "<item/>");
    EXPECT_EQ(load(vector, "<item name='a'/>"), "no_error 1 | a=() | map");

    opened_vector_collection vectors;
    load(vectors, "<item/>");
    load(vectors, "<item name='a'/><arg name='x' c='1'/>");
    EXPECT_EQ(load(vectors, "<item name='b'/><arg name='y' d=''/><item name='c'/><arg name='z'/>$"),
              "duplicate_attrib 0 | (name,c,name,d,name) a=((x,1)) | end");
    std::vector<std::map<ustring8, ustring8>> sets;
    EXPECT_TRUE(vectors.get_args_vector("a", sets));
    EXPECT_EQ(sets, (decltype(sets){{{"name", "x"}, {"c", "1"}, {"d", ""}}}));
}

// A host may change the next node before a table takes it.
TEST(Tables, ReadTheNextNodeAsTheHostChangedIt)
{
    const auto parser = parsed("<maps>\n<item name='b'/><item name='d'/><item name='c'>x</item></maps>", 1);
    parser->node_queue_front().attributes.front().second = "e";
    parser->node_queue_front().line = 7;
    opened<map_t> map;
    EXPECT_EQ(load(map, *parser), "invalid_format 2 | d= e= | maps");
    for (const unsigned long line : {7UL, 0UL}) {
        const auto other = parsed("<maps>\n<item name='a'/>\n<x/></maps>", 1);
        other->node_queue_front().line = line;
        other->node_queue_front().attributes = {{"name", "f"}};
        EXPECT_EQ(load(map, *other), (line == 7 ? "no_error 7" : "duplicate_item 0") + std::string(" | d= e= f= | x"));
    }
    const auto last = parsed("<maps><y/></maps>", 1);
    last->node_queue_front().tag = "x";
    last->node_queue_front().line = 0;
    EXPECT_EQ(load_new<opened_vector_collection>("<x/>"), "no_error 1 | () | x");
    opened_vector_collection vectors;
    EXPECT_EQ(load(vectors, *last), "no_error 0 | () | x");
}

TEST(Tables, AddItemsInBatchesAsIfOneByOne)
{
    check_batches<opened<map_t>>({MT_SIMPLE, 1, ""});
    check_batches<opened<vector_map_t>>({MT_VECTOR, 2, ""});
    check_batches<opened_collection>({MT_COLLECTION, 0, " b='1'"});
    check_batches<opened_vector_collection>({MT_VECTOR_COLLECTION, 2, " b='1'"});
}

// Attributes in the order of the schema are found in one way, all others in another. Of an attribute that a host repeated
// in a node the first counts.
TEST(Tables, FindTheAttributesOfAWideSchemaInAnyOrder)
{
    for (const std::size_t width : {2u, 15u, 40u}) {
        std::string first = "<item name='a'";
        std::string second = "/>";
        std::string expected = "no_error 0 | (name";
        std::string values = "b";
        for (std::size_t i = 1; i < width; ++i) {
            const std::string name = "n" + std::to_string(i * 7 % 41);
            first += ' ' + name + "=''";
            if (i % 3 != 1) second.insert(0, ' ' + name + "='" + name + "'");
            expected += ',' + name;
            values += ',' + (i % 3 != 1 ? name : "");
        }
        const std::string rest = "a" + std::string(width - 1, ',');
        const std::string item = "<item name='b'" + second;
        expected += ") a=(" + rest + ')';
        EXPECT_EQ(load_new<opened_collection>(first + "/>" + item), expected + " b=(" + values + ") | map");
        EXPECT_EQ(load_new<opened_collection>(first + "/>" + item.substr(0, item.size() - 2) + " u=''/>"),
                  "collection_error" + expected.substr(8) + " | map");
        const auto parser = parsed(document(item), 2);
        parser->node_queue_front().attributes.emplace_back("name", "c");
        attrib_schema names;
        opened_collection map;
        EXPECT_EQ(load(map, *parser).rfind("duplicate_attrib 0 | (name", 0), 0U);
    }
}
