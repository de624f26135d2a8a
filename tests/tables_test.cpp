// The four kinds of table: how each reads the content of its map.
#include <gtest/gtest.h>

#include "data_mapper/map_collection.h"
#include "documents.h"

using namespace data_mapper4;
using documents::check;
using documents::group;
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

template <class table>
struct opened_with_schema : opened<table>
{
    std::string schema() const { return ' ' + rendered(this->m_attrib_names); }
};

using simple = opened<map_t>;
using vector = opened<vector_map_t>;
struct collection : opened_with_schema<collection_map_t>
{
    using collection_map_t::get_attrib;
    using collection_map_t::get_attribs;
};
struct vector_collection : opened_with_schema<vector_collection_map_t>
{
    using vector_collection_map_t::get_args_vector;
};

// A document with the root, the map element and the first element of the content on line 1; each further element has a
// line of its own. In the content "{a}" is an item, "[x]" an arg, and "$" the end of the input instead of the map's.
std::string document(const std::string& content)
{
    std::string text = "<maps><map name='m'>";
    const std::size_t first = text.size();
    for (const char each : content) {
        const bool is_next = each == '{' || each == '[' || (each == '<' && text.back() == '>');
        if (is_next && text.size() != first) text += '\n';
        text += each == '{' ? "<item name='" : each == '[' ? "<arg name='" : "";
        text +=
            each == '}' || each == ']' ? "'/>" : std::string(each == '{' || each == '[' || each == '$' ? 0 : 1, each);
    }
    return text + (content.find('$') != std::string::npos ? "" : "\n</map></maps>");
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
    const std::string outcome = load(map, content);
    map.clear();
    EXPECT_TRUE(map.empty() && map.begin() == map.end());
    return outcome;
}

}  // namespace

TEST(Tables, ASimpleMapReadsItemsAndTheirTexts)
{
    const std::vector<group> rows = {
        {"no_error 0 | | end", {"$"}},
        {"no_error 0 | | x", {"<x/>"}},
        {"no_error 0 | | Item", {"<Item name='a'/>"}},
        {"no_error 3 | a=x b= | x", {"{a}[x]{b}<x/>"}},
        {"no_error 1 | a=x | end", {"{a}[x]$"}},
        {"no_error 1 | a= | map", {"{a}[]", "{a}", "<item name='a'> \n</item>"}},
        {"no_error 1 | a=x | arg", {"{a}[x][y]"}},
        {"no_error 4 | B= b= bb= Ä= | map", {"{b}{B}{bb}{Ä}"}},
        {"invalid_format 1 | | end", {"{a}$"}},
        {"duplicate_item 2 | a= | arg", {"{a}{a}[x]"}},
        {"duplicate_item 3 | <= > = | arg", {"{&lt;}{> }{&#60;}[x]"}},
        {"duplicate_item 5 | abcdefgh= abcdefghi= b= z= | map", {"{z}{b}{abcdefgh}{abcdefghi}{abcdefgh}"}},
        // one fault of an item, or of an arg
        {"invalid_format 1 | | x",
         {"{}<x/>", "<item/><x/>", "<item Name='a'/><x/>", "{a' id='1}<x/>", "<item name='a'>t</item><x/>",
          "{a}<arg/><x/>", "{a}<arg nam='x'/><x/>", "{a}[x' b=']<x/>", "{a}<arg name='x'>t</arg><x/>"}},
        // an arg inside its item: the item's end tag is an item without a name
        {"invalid_format 3 | a=x | map", {"<item name='a'>[x]</item>"}},
    };
    check(rows, load_new<simple>);
}

TEST(Tables, AVectorMapKeepsReadingAfterAFaultyArg)
{
    const std::vector<group> rows = {
        {"no_error 0 | | end", {"$"}},
        {"no_error 4 | a=(x,y) b=() | x", {"{a}[x][y]{b}<x/>"}},
        {"no_error 3 | a=(x,x) | map", {"{a}[x][x]"}},
        {"no_error 2 | a=(x) | end", {"{a}[x]$"}},
        {"invalid_format 1 | | end", {"{a}$"}},
        {"duplicate_item 2 | a=() | arg", {"{a}{a}[x]"}},
        {"invalid_format 2 | a=() | map", {"{a}[]", "{a}[x' b=']", "{a}<arg/>", "{a}<arg name='x'>t</arg>"}},
        {"invalid_format 3 | a=(x) | arg", {"{a}[x][][y]"}},
        {"invalid_format 4 | a=() b=(z) | map", {"{a}[]{b}[z]"}},
        {"duplicate_item 3 | a=() | map", {"{a}[]{a}"}},
    };
    check(rows, load_new<vector>);
}

TEST(Tables, ACollectionMapReadsRowsByAttributeName)
{
    const std::vector<group> rows = {
        {"no_error 0 | () | end", {"$"}},
        {"no_error 0 | () | x", {"<x/>"}},
        {"no_error 0 | (name,c,s) a=(a,r,4) b=(b,,5) | map", {"{a' c='r' s='4}{b' s='5}"}},
        {"no_error 0 | (name,c,s) a=(a,,4) b=(b,6,5) | map", {"{a' c='' s='4}{b' s='5' c='6}"}},
        {"no_error 0 | (name,c,d,e) a=(a,1,2,3) b=(b,6,5,4) | map", {"{a' c='1' d='2' e='3}{b' e='4' d='5' c='6}"}},
        {"no_error 0 | (name,c) a=(a,1) | end", {"{a' c='1}$"}},
        {"no_error 0 | (name,c) a=(a,1) | arg", {"{a' c='1}[x]{b}"}},
        {"collection_error 0 | (name,c) a=(a,1) | map", {"{a' c='1}{b' c='2' w='2}", "{a' c='1}{b' w='2}"}},
        {"collection_error 0 | (name) a=(a) | map", {"{a}{b' c='2}"}},
        {"duplicate_item 2 | (name) a=(a) | map", {"{a}{a}", "{a}{a' c='1}"}},
        {"invalid_format 1 | () | map",
         {"<item c='red' name='a'/>", "{' c='red}", "<item/>", "<item name='a' c='1'>x</item>"}},
    };
    check(rows, load_new<collection>);
}

TEST(Tables, AVectorCollectionMapForgetsAFaultAtTheNextSoundArg)
{
    const std::string good = "{a}[x' c='1]";
    const std::string dropped = good + "[y' d='2]";
    const std::vector<group> rows = {
        {"no_error 0 | () | end", {"$"}},
        {"no_error 1 | () | x", {"<x/>"}},
        {"no_error 4 | (name,c) a=((x,1),(y,)) | x", {good + "[y]<x/>"}},
        {"no_error 2 | () a=() | x", {"{a}<x/>"}},
        {"invalid_format 1 | () | end", {"{a}$"}},
        {"no_error 0 | (name,c) a=((x,1)) | end", {good + "$"}},
        {"invalid_format 1 | () | arg", {"{a' c='1}[x]"}},
        {"invalid_format 4 | (name,c) a=((x,1)) | end", {good + "{b}<arg c='1' name='y'/>$"}},
        {"duplicate_item 3 | (name,c) a=((x,1)) | arg", {good + "{a}[y]"}},
        {"duplicate_item 2 | () a=() | arg", {"{a}{a}[x' c='1]"}},
        {"invalid_format 4 | (name,c) | arg", {good + "<arg c='2'/>[z]<x/>"}},
        {"invalid_format 4 | (name,c) | x", {good + "[]<x/>", good + "<arg/><x/>", good + "<arg name='y'>t</arg><x/>"}},
        {"collection_error 4 | (name,c) | x", {dropped + "<x/>"}},
        {"collection_error 0 | (name,c) | end", {dropped + "$"}},
        {"no_error 6 | (name,c) b=((z,3)) | x", {dropped + "{b}[z' c='3]<x/>"}},
        {"no_error 6 | (name,c) a=((z,3)) | x", {dropped + "{a}[z' c='3]<x/>"}},
        {"collection_error 5 | (name,c) | x", {dropped + "{b}<x/>"}},
        {"no_error 0 | (name,c) c=((z,)) | end", {dropped + "{b}{c}[z]$"}},
        {"invalid_format 4 | (name,c) | map", {dropped + "{}"}},
        {"invalid_format 3 | (name) a=((x)) | map", {"<item name='a'>[x]</item>"}},
    };
    check(rows, load_new<vector_collection>);
}

TEST(Tables, AddTheItemsOfASecondLoad)
{
    simple texts;
    load(texts, "{a}[x]");
    EXPECT_EQ(load(texts, "<x/>{b}"), "no_error 1 | a=x | x") << "the line stays";
    EXPECT_EQ(load(texts, "{b}{a}"), "duplicate_item 2 | a=x b= | map");
    texts.clear();
    EXPECT_TRUE(texts.empty() && texts.id() == "m" && texts.m_error.type() == map_error_t::duplicate_item);
    EXPECT_EQ(load(texts, "{a}"), "no_error 1 | a= | map") << "the fault is forgotten";
    vector lists;
    load(lists, "<item/>");
    EXPECT_EQ(load(lists, "{a}"), "no_error 1 | a=() | map") << "the fault is forgotten";
    collection rows;
    load(rows, "{a' c='1}");
    EXPECT_EQ(load(rows, "{b' d='1}"), "duplicate_attrib 0 | (name,c,name,d) a=(a,1) | map");
    // The row is now shorter than the schema.
    ustring8 value = "before";
    std::map<ustring8, ustring8> attribs;
    EXPECT_TRUE(rows.get_attrib("a", "d", value) && value.empty() && rows.get_attribs("a", attribs));
    EXPECT_EQ(rendered(attribs), "(c=1,d=,name=a)");
    EXPECT_EQ(load(rows, "<x/>"), "no_error 0 | (name,c,name,d) a=(a,1) | x");
    vector_collection sets;
    load(sets, "{a}[x' c='1]");
    EXPECT_EQ(load(sets, "{b}[y' d=']{c}[z]$"), "duplicate_attrib 0 | (name,c,name,d,name) a=((x,1)) | end");
    std::vector<std::map<ustring8, ustring8>> found;
    EXPECT_TRUE(sets.get_args_vector("a", found));
    EXPECT_EQ(rendered(found), "((c=1,d=,name=x))");
}

// A host may change the next node before a table takes it.
TEST(Tables, ReadTheNextNodeAsTheHostChangedIt)
{
    simple map;
    const auto load_changed = [&](const std::string& content, unsigned long line, const std::string& name) {
        const auto parser = parsed(document(content), 2);
        parser->node_queue_front().line = line;
        parser->node_queue_front().attributes = {{"name", name}};
        return load(map, *parser);
    };
    EXPECT_EQ(load_changed("{b}{d}<item name='c'>t</item>", 7, "e"), "invalid_format 3 | d= e= | map");
    EXPECT_EQ(load_changed("{a}<x/>", 7, "f"), "no_error 7 | d= e= f= | x");
    EXPECT_EQ(load_changed("{a}<x/>", 0, "g"), "no_error 0 | d= e= f= g= | x");
    EXPECT_EQ(load_changed("{a}{b}", 0, "f"), "duplicate_item 0 | d= e= f= g= | item");
}

TEST(Tables, LeaveTheElementsAfterADuplicateInTheQueue)
{
    const auto parser =
        parsed("<maps><item name='a'/><item name='a'><item name='b'><item name='c'/></item></item></maps>", 1);
    collection map;
    EXPECT_EQ(load(map, *parser), "duplicate_item 1 | (name) a=(a) | item");
    EXPECT_EQ(parser->node_queue_front().depth, 2U);
}
