// The four kinds of map, each on its own: what a table makes of its map's content.
#include <gtest/gtest.h>

#include "data_mapper/attrib_schema.h"
#include "data_mapper/item_reader.h"
#include "data_mapper/map_collection.h"
#include "documents.h"

using namespace data_mapper4;
using documents::check;
using documents::parsed;

namespace {

std::string rendered(const ustring8& value)
{
    return value;
}

template <class value>
std::string rendered(const std::vector<value>& values)
{
    std::string text;
    for (const value& each : values) text += (text.empty() ? "" : ",") + rendered(each);
    return '(' + text + ')';
}

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

// A document whose root and map element stand on line 1 with the first element of the content; each further element has
// a line of its own. "$" at the content's end is the end of the input, otherwise the map's end tag follows.
std::string document(std::string text)
{
    const bool is_cut = !text.empty() && text.back() == '$';
    if (is_cut) text.pop_back();
    for (std::size_t at = 0; (at = text.find("><", at)) != std::string::npos;) text.insert(++at, "\n");
    return "<maps><map name='m'>" + text + (is_cut ? "" : "\n</map></maps>");
}

// Loads content into a table: code and line | schema and items | the tag that waits.
template <class table>
std::string load(table& map, const std::string& text)
{
    const auto parser = parsed(document(text));
    parser->node_queue_pop();
    parser->node_queue_pop();
    map_error_t error = map.load("m", *parser);
    EXPECT_TRUE(error.type() == map.m_error.type() && error.line() == map.m_error.line() && map.id() == "m");
    std::string line = map_collection().map_error_as_string(error) + ' ' + std::to_string(error.line()) + " |";
    line += map.schema();
    for (const auto& [name, value] : map.m_items.read()) line += ' ' + name + '=' + rendered(value);
    return line + " | " + (parser->node_queue_empty() ? "end" : parser->node_queue_front().tag);
}

template <class table>
std::string load_new(const std::string& text)
{
    table map;
    return load(map, text);
}

// Items in no order are added in batches, but not in a document that has text behind an element: the same content must
// come to the same both ways, sound or with a fault somewhere.
template <class table>
void check_batches(const std::string& arg, const std::string& attribute)
{
    std::mt19937 random(1);
    const auto name_of = [&](std::size_t i) {
        const std::string begins[] = {"", "a", "same.begin.of.many", "\xC3\xA9", std::string(i % 30, 'z')};
        return begins[random() % 5] + std::to_string(i * 7919 % 1000003);
    };
    const std::vector<std::string> faults = {"",
                                             "<item name='again'/>",
                                             "<item name=''/>",
                                             "<item name='t'>t</item>",
                                             "<item name='u' unknown=''/>",
                                             "<arg name='second'/>",
                                             "<arg/><item name='v'/>",
                                             "<item name='&lt;'/>",
                                             "<arg name='' x='1'/><item name='w'/>"};
    for (const std::size_t size : {3u, 40u, 400u, 5000u}) {
        // The largest is for several batches behind each other, in which a fault is no other.
        const std::size_t tried = size < 1000 ? faults.size() : 2;
        for (std::size_t f = 0; f < tried; ++f) {
            std::string text = "<item name='again'" + attribute + "/>" + arg;
            const std::size_t place = random() % size;
            for (std::size_t i = 0; i < size; ++i) {
                text += "<item name='" + name_of(i) + "'" + (i % 5 == 0 ? "" : attribute) + "/>";
                for (std::size_t args = random() % 3; args > 0; --args) text += arg;
                if (i == place) text += faults[f];
            }
            table in_batches;
            table one_by_one;
            EXPECT_EQ(load(in_batches, text + "<x/>"), load(one_by_one, text + "<x/>text")) << size << ' ' << faults[f];
            one_by_one = in_batches;
            in_batches.clear();
            EXPECT_TRUE(in_batches.begin() == in_batches.end() && in_batches.empty() && !one_by_one.empty());
        }
    }
}

}  // namespace

TEST(Tables, ASimpleMapReadsOtherItems)
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

TEST(Tables, AVectorMapStopsAtAFaultyArg)
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

TEST(Tables, ACollectionMapMixesUpItsColumns)
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

TEST(Tables, AVectorCollectionMapForgetsOrKeepsAFault)
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

TEST(Tables, ASecondLoadLosesTheFirst)
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

// A host may look at the node in front, and change it, before a table takes it.
TEST(Tables, ANodeInFrontIsReadAnew)
{
    const auto parser = parsed("<maps>\n<item name='b'/><item name='d'/><item name='c'>x</item></maps>");
    parser->node_queue_pop();
    parser->node_queue_front().attributes.front().second = "e";
    parser->node_queue_front().line = 7;
    opened<map_t> map;
    EXPECT_EQ(map.load("m", *parser).type(), map_error_t::invalid_format);
    EXPECT_TRUE(map.m_error.line() == 2 && map.m_items.read().size() == 2 && map.m_items.read().count("e") == 1);
}

TEST(Tables, ABatchIsSorted)
{
    std::vector<ustring8> keys;
    for (std::size_t i = 0; i < 900; ++i)
        keys.push_back(std::string(i % 40, i % 3 == 0 ? '\xC3' : 'z') + std::to_string(i * 7919 % 251));
    item_batch batch;
    for (const ustring8& key : keys) batch.add({key, true}, 0, 0);
    batch.sort();
    const auto is_less = [&](auto& a, auto& b) {
        return std::pair(batch.items[a.item].key, a.item) < std::pair(batch.items[b.item].key, b.item);
    };
    EXPECT_TRUE(std::is_sorted(batch.sorted.begin(), batch.sorted.end(), is_less) && batch.sorted.size() == 900);
}

TEST(Tables, ABatchAddsOtherItems)
{
    check_batches<opened<map_t>>("<arg name='x'/>", "");
    check_batches<opened<vector_map_t>>("<arg name='x'/>", "");
    check_batches<opened_collection>("", " b='1'");
    check_batches<opened_vector_collection>("<arg name='x' b='1'/>", "");
}

// Attributes in the schema's order are found one way, others another, and beyond a handful of names a third; all must
// agree with a plain search.
TEST(Tables, AWideSchemaFindsOtherAttributes)
{
    for (const std::size_t width : {2u, 15u, 16u, 17u, 40u}) {
        std::vector<ustring8> name_texts = {"name"};
        for (std::size_t i = 1; i < width; ++i) name_texts.push_back("n" + std::to_string(i * 7 % 41));
        xml_element first;
        xml_element second;
        std::vector<ustring8> expected;
        for (std::size_t i = 0; i < width; ++i) {
            first.attributes.push_back({name_texts[i], {}});
            if (i % 3 != 1) second.attributes.insert(second.attributes.begin(), {name_texts[i], {name_texts[i]}});
            expected.push_back(i % 3 != 1 ? name_texts[i] : "");
        }
        attrib_schema names;
        EXPECT_EQ(read_attrib_names(first, names, false).type(), map_error_t::no_error);
        second.attributes.push_back({second.attributes.front().name, {"not the first of its name"}});
        attrib_row values;
        EXPECT_EQ(read_attrib_values(second, names, values).type(), map_error_t::no_error);
        EXPECT_EQ(texts_of(values.data(), values.size()), expected);
        second.attributes.back().name = "unknown";
        EXPECT_EQ(read_attrib_values(second, names, values).type(), map_error_t::collection_error);
        EXPECT_EQ(values.size(), width);
        first.attributes.push_back({"name", {}});
        EXPECT_EQ(read_attrib_names(first, names, true).type(), map_error_t::duplicate_attrib);
        EXPECT_EQ(names.size(), 2 * width);
    }
}
