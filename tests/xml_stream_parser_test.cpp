// The reader: which documents it accepts, what it finds wrong with the others and where, and the nodes it makes of
// both.
#include <gtest/gtest.h>

#include <chrono>
#include <sstream>

#include "documents.h"

using documents::check;
using documents::nodes;
using documents::outcome;
using documents::parsed;
using NUVEK_2_18::parser::xml_stream_parser;
using namespace std::string_literals;

namespace {

std::string repeated(const std::string& text, std::size_t times)
{
    std::string result;
    result.reserve(text.size() * times);
    for (std::size_t i = 0; i < times; ++i) result += text;
    return result;
}

// ASCII text as UTF-16.
std::string pairs(const std::string& text, bool is_big_endian)
{
    std::string result;
    for (const char character : text) result += is_big_endian ? "\0"s + character : character + "\0"s;
    return result;
}

}  // namespace

TEST(XmlStreamParser, TheNodesComeInAnotherOrder)
{
    check(
        {
            {"end_of_file 0: maps+@1 map+@1[name=m] item@1[name=k] arg@1[name=v] /map@1 /maps@1",
             {"<maps><map name=\"m\"><item name=\"k\"/><arg name=\"v\"/></map></maps>"}},
            {"end_of_file 0: a+@1 b@1[name=k][b=2][a=1] /a@1", {"<a><b name='k' b='2' a='1'/></a>"}},
            {"end_of_file 0: a+@1 b+@2 c@3 /b@4 /a@6", {"<a>\n<b>\r<c\r\n/></b>\n\n</a\n>"}},
            // text before the first child, behind a child, and in several pieces
            {"end_of_file 0: a@1\"x\"",
             {"<a>x</a>", "<a>&#120;</a>", "<a><![CDATA[x]]></a>", "<a><?y z?>x<!--y--></a>"}},
            {"end_of_file 0: a+@1\"1\" b@1\"2\" c@1 /a@1\"3 4\"", {"<a>1<b>2</b>3<c/> 4</a>"}},
            {"end_of_file 0: a+@1 b@2 /a@2", {"<a> \n<b/>\t</a>"}},
            {"end_of_file 0: a+@1 b+@1 c@1 /b@1\"x\" /a@1\"y\"", {"<a><b><c/>x</b>y</a>"}},
            {"end_of_file 0: a@1\"1<&]]>5\"", {"<a>1<!--2--><![CDATA[<&]]]]><?p 4?>&gt;&#x35;</a>"}},
            {"end_of_file 0: a@1\"1\\102\\103\\134\"", {"<a>1\r\n2\r3&#13;4</a>"}},
            {"end_of_file 0: a@1[b=1 2 3\\94\\13\\10<'\"]", {"<a b='1\r\n2\t3&#9;4&#xD;&#10;&lt;&apos;&quot;'/>"}},
            // no text, and what stands around the root
            {"end_of_file 0: a@1",
             {"<a/>", "<a></a >", "<a>&#32;<![CDATA[ ]]></a>", "<?xml version='1.1'?><a/>\n<?q x?><!--c-->",
              "\xEF\xBB\xBF<?xml version='1.0' encoding=\"utf-8\" standalone = 'yes' ?><!--c--> <?p?><a/>"}},
            {"end_of_file 0: a@2[b=1]",
             {"<?xml-p x?><!DOCTYPE a PUBLIC \"-//x'y\" ']>' [<!ENTITY e \"]>\"> %e; <!--]>--><?p ]>?> ] >\n<a b='1'/>",
              "<!DOCTYPE a SYSTEM 'x'>\n<a b='1'></a>"}},
            {"end_of_file 0: a\xC2\xB7\xCC\x80\xE2\x81\x80@1", {"<a\xC2\xB7\xCC\x80\xE2\x81\x80/>"}},
            {"end_of_file 0: :a.b-1@1[_:\xC3\xA9=\xF0\x9F\x98\x80]", {"<:a.b-1 _:\xC3\xA9='\xF0\x9F\x98\x80'/>"}},
        },
        outcome);
}

TEST(XmlStreamParser, ANodeIsPlacedElsewhere)
{
    const auto parser = parsed("<a>\n\xC3\xA9<b/> <c/></a>");
    std::string places;
    for (; !parser->node_queue_empty(); parser->node_queue_pop()) {
        const auto& node = parser->node_queue_front();
        places += std::to_string(node.column) + '/' + std::to_string(node.depth) + ' ';
    }
    EXPECT_EQ(places, "1/0 3/1 8/1 12/0 ");
}

TEST(XmlStreamParser, AFaultHasAnotherCodeOrLine)
{
    check(
        {
            {"no_root_tag 1: ", {"", " <!--c-->", "<!DOCTYPE a>"}},
            {"no_root_tag 3: ", {"\r\n\r<?p?>"}},
            {"incomplete 0: a+@1 b+@2", {"<a>\n<b>", "<a>\n<b><!-- -->\n"}},
            {"incomplete 0: a+@1\"x\" b@1", {"<a>x<b/>y"}},
            {"end_tag_mismatch 2: a+@1", {"<a>\n</b>", "<a>\n</aa>", "<a>\n</A>"}},
            {"end_tag_mismatch 1: a+@1 b+@1", {"<a><b></a></b>"}},
            {"end_tag_mismatch 1: a@1", {"<a/></a>"}},
            {"end_tag_mismatch 1: ", {"</a>"}},
            {"attribute_redefined 2: ", {"<a b='1' c='2'\nb='3'/>", "<a b='1'\nb='2' c/>"}},
            {"missing_equal 2: ", {"<a b\n'1'/>", "<a b\n/>", "<a b\n>"}},
            {"missing_quote 1: ", {"<a b=1/>", "<a b=", "<a b='1", "<a b='&l", "<a b='&#", "<a b=\"'/>"}},
            {"missing_quote 3: ", {"<a b='1\n\n/>"}},
            {"unknown_entity 1: ", {"<a b='&c;'/>", "<a b='&LT;'/>"}},
            {"unknown_entity 1: a+@1\"x\"", {"<!DOCTYPE a [<!ENTITY c 'd'>]><a>x&c;</a>"}},
            {"unexpected_character 2: a@1",
             {"<a/>\nx", "<a/>\n<b/>", "<a/>\n&amp;", "<a/>\n<![CDATA[]]>", "<a/>\n<!DOCTYPE a>"}},
            {"unexpected_character 1: a+@1\"x\"", {"<a>x&c</a>", "<a>x& </a>", "<a>x]]></a>", "<a>x<", "<a>x<!b"}},
            {"unexpected_character 1: a+@1\"]\"", {"<a>]]]></a>"}},
            {"unexpected_character 1: a+@1",
             {"<a>&#0;</a>", "<a>&#xD800;</a>", "<a>&#x110000;</a>", "<a>&#4294967361;</a>", "<a>&#;</a>",
              "<a>&#x;</a>", "<a>&#X41;</a>", "<a>&#xg;</a>", "<a>&#x1g;</a>", "<a></a", "<a></a b='1'>", "<a></ a>",
              "<a><b/ ></a>"}},
            {"unexpected_character 1: a+@1",
             {"<a><b c='1'd='2'/></a>", "<a><!-- -- --></a>", "<a><!--->", "<a><![CDATA[x]]</a>", "<a><?XmL x?></a>",
              "<a><?p", "<a><?p?x?></a>"}},
            // the same in the prolog
            {"unexpected_character 1: ",
             {"x<a/>", "< a/>", "<1/>", "<\xC3\x97/>", "<\xC2\xB7/>", "<\xCC\x80/>", "<a b='<'/>", "<a b", "<a b='1' ",
              "&amp;<a/>"}},
            {"unexpected_character 1: ",
             {" <?xml version='1.0'?><a/>", "<?xml?><a/>", "<?xml version='2.0'?><a/>", "<?xml version='1.'?><a/>",
              "<?xml version='1.0' x?><a/>", "<?xml encoding='UTF-8'?><a/>", "<?xml version='1.0' standalone='1'?><a/>",
              "<?xml version='1.0'standalone='yes'?><a/>"}},
            {"unexpected_character 1: ",
             {"<!DOCTYPE a><!DOCTYPE a><a/>", "<!DOCTYPE a SYSTEM><a/>", "<!DOCTYPE a PUBLIC '{' 's'><a/>",
              "<!DOCTYPE a PUBLIC 'p'><a/>", "<!DOCTYPE a [<!ELEMENT b '>]><a/>", "<!DOCTYPE a [<!OTHER b>]><a/>",
              "<!DOCTYPE a [<![INCLUDE[]]>]><a/>", "<!DOCTYPE a [x]><a/>", "<!DOCTYPE a [", "<!doctype a><a/>"}},
        },
        outcome);
    EXPECT_EQ(parsed("<?xml version='1.0'?><a/>", 0)->error(), xml_stream_parser::end_of_file);
    EXPECT_EQ(parsed("<?xml-p version='1.0'?><a/>", 1)->error(), xml_stream_parser::no_xml_header);
    EXPECT_EQ(parsed("<a/>", 3)->error(), xml_stream_parser::end_of_file);
}

// Plain markup within the root is recognised by other code, which must come to the same.
TEST(XmlStreamParser, PlainMarkupIsJudgedOtherwise)
{
    const std::string eight = "<a b1='' b2='' b3='' b4='' b5='' b6='' b7='' b8=''";
    std::istringstream faults(
        "<a b='1' c='2'\nb='3'/>|<a bbbbbbbb='' bbbbbbbb=''/>|<a bbbbbbbbb='' bbbbbbbbb=''/>|<a 1=''/>|<a b='1'c=''/>|"
        "<a =''/>|<a b'1'/>|<a/ >|<a b='<'/>|<a b='&amp'/>|<a b='&am;'/>|<1/>|<a\xC3\x97/>|<a b=1/>|<a b='1|<a "
        "b=\"'/>|" +
        eight + " b8=''/>|" + eight + " b9='' b9=''/>|<a b>|<a b = '1' / >");
    for (std::string tag; std::getline(faults, tag, '|');) EXPECT_EQ(outcome("<r>" + tag), outcome(tag) + "r+@1");
    std::string sound = "<a bbbbbbbb='' bbbbbbbc=''/>|<a bbbbbbbbb='' bbbbbbbbc=''/>|<a\n\tb = \"'\" />|" + eight +
                        " b9=''/>|<a b='&lt;&gt;&amp;&quot;&apos;&#65;'/>|<a\xC3\xA9 b\xC3\xA9='\xC3\xA9'/>";
    for (const std::size_t size : {15u, 16u, 17u, 31u, 32u, 33u, 64u}) {
        sound += "|<a b='" + std::string(size, 'v') + "' " + std::string(size, 'c') + "=''/>";
    }
    std::istringstream tags(sound);
    for (std::string tag; std::getline(tags, tag, '|');) {
        const std::string within = outcome(tag).insert(std::string("end_of_file 0: ").size(), "r+@1 ");
        EXPECT_EQ(outcome("<r>" + tag + "</r>").substr(0, within.size()), within);
    }
}

TEST(XmlStreamParser, BytesAreTakenForOtherCharacters)
{
    const std::string header = "<?xml version='1.0' encoding='";
    const std::string latin = "\n<a>\xE4</a>";
    const std::string utf16 = "<a b='1'/>";
    check(
        {
            {"end_of_file 0: a@1\"\xC3\xA4\xE2\x82\xAC\xF0\x90\x80\x80\"",
             {"<a>\xC3\xA4\xE2\x82\xAC\xF0\x90\x80\x80</a>"}},
            {"end_of_file 0: a@2\"\xC3\xA4\"", {header + "iso-8859-1'?>" + latin}},
            {"end_of_file 0: a@1[b=1]",
             {header + "US-ASCII'?><a b='1'/>", "\xFF\xFE" + pairs(utf16, false), "\xFE\xFF" + pairs(utf16, true),
              pairs(" " + utf16, false), pairs(header + "UTF-16'?>" + utf16, true),
              "\xFF\xFE" + pairs(header + "utf-16le'?>" + utf16, false)}},
            {"end_of_file 0: a@1\"\xF0\x9F\x98\x80\"",
             {"\xFE\xFF" + pairs("<a>", true) + "\xD8\x3D\xDE\x00"s + pairs("</a>", true)}},
            // ill-formed, or no character of XML
            {"unexpected_character 1: a+@1\"x\"",
             {"<a>x\xC0\xAF</a>", "<a>x\xED\xA0\x80</a>", "<a>x\xF4\x90\x80\x80</a>", "<a>x\xE2\x82</a>",
              "<a>x\x80</a>", "<a>x\xEF\xBF\xBE</a>", "<a>x\x01</a>", "<a>x\xE0\x9F\xBF</a>",
              "<a>x\xF0\x8F\xBF\xBF</a>", "<a>x\xC3\xC3</a>", "<a>x\x1F plain text</a>",
              "\xFF\xFE" + pairs("<a>x", false) + "\x3D\xDE" + pairs("</a>", false),
              "\xFE\xFF" + pairs("<a>x", true) + "\xD8\x3D" + pairs("</a>", true)}},
            {"unexpected_character 1: ", {"<a b='\xC3"}},
            {"unexpected_character 1: a@1", {"<a/>\0"s, "\xFF\xFE" + pairs("<a/>", false) + "\n"}},
            {"unexpected_character 2: a+@2", {header + "US-ASCII'?>" + latin}},
            // encodings that are not known, or not so
            {"fatal_error 2: ", {"<?xml version='1.0'\nencoding='KOI8-R'?><a/>"}},
            {"fatal_error 1: ",
             {header + "UTF-16'?><a/>", "\xEF\xBB\xBF" + header + "ISO-8859-1'?><a/>",
              "\xFF\xFE" + pairs(header + "UTF-16BE'?><a/>", false),
              "\xFE\xFF" + pairs(header + "UTF-8'?><a/>", true)}},
            {"unexpected_character 1: ", {header + "8-bit'?><a/>", header + "_a'?><a/>", header + "a:b'?><a/>"}},
        },
        outcome);
}

TEST(XmlStreamParser, SomethingElseThanARegularFileIsOpened)
{
    const documents::folder folder;
    folder.write("there/a.xml", "<a/>");
    folder.write("there/\xC3\xA9\xF0\x9F\x98\x80.xml", "<a/>");
    const auto opened = [&](const std::u16string& path) { return xml_stream_parser(path, 2).error(); };
    const std::u16string base = documents::units(folder.path(""));
    for (const auto* name : {u"there\\a.xml", u"there/a.xml", u"there\\\u00E9\U0001F600.xml"}) {
        EXPECT_EQ(opened(base + name), xml_stream_parser::no_error);
    }
    // Too long for one name, as which its backslashes could be read.
    EXPECT_EQ(opened(base + documents::units(std::wstring(300, L'\\')) + u"there\\a.xml"), xml_stream_parser::no_error);
    const std::u16string unpaired = base + u"there\\" + char16_t{0xD800};
    for (const auto& path : {u""s, base + u"there", base + u"b.xml", base + u"there\\a.xml\\b", u"/dev/null"s,
                             base + u"there\\a.xml"s + u'\0', unpaired}) {
        xml_stream_parser parser(path, 2);
        EXPECT_EQ(parser.error(), xml_stream_parser::file_not_found);
        EXPECT_TRUE(parser.parse() == xml_stream_parser::file_not_found && parser.error_line() == 0);
        EXPECT_EQ(nodes(parser) + parser.node_queue_front().tag + parser.node_queue_pop().tag, "");
    }
#if defined(__linux__)
    ASSERT_EQ(::mkfifo(folder.system_path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(opened(base + u"pipe"), xml_stream_parser::file_not_found);
    // A regular file whose reading fails.
    EXPECT_EQ(opened(u"/proc/self/mem"), xml_stream_parser::no_error);
    EXPECT_EQ(xml_stream_parser(u"/proc/self/mem", 0).parse(), xml_stream_parser::fatal_error);
    // As written comes first, although the backslash could be a separator.
    folder.write("there\\a.xml", "<other/>");
    xml_stream_parser parser(documents::units(folder.system_path("there\\a.xml").wstring()), 2);
    parser.parse();
    EXPECT_EQ(nodes(parser), "other@1");
#endif
}

// Sizes at which anything that grows with the square of its input, or recurses, does not come back.
TEST(XmlStreamParser, AHugeDocumentTakesForEver)
{
    const std::size_t many = 1000000;
    std::string attributes;
    for (std::size_t i = 0; i < many / 10; ++i) attributes += " a" + std::to_string(i) + "=''";
    const std::pair<std::string, std::size_t> rows[] = {
        {repeated("<a>", many) + repeated("</a>", many), 2 * many - 1},
        {"<a" + attributes + "/>", 1},
        {"<a>" + repeated("<b/>x", many) + "</a>", many + 2},
        {"<a>" + repeated("]", many) + repeated("&lt;", many) + "</a>", 1},
        {"<!--" + repeated("- ", many) + "--><a/>", 1},
        {"<!DOCTYPE a [" + repeated("<!ENTITY a ''>", many) + "]><a/>", 1},
        {"<" + repeated("a", many) + " b='" + repeated("&#65;\r\n", many) + "'/>", 1},
    };
    for (const auto& [document, count] : rows) {
        const auto begin = std::chrono::steady_clock::now();
        const auto parser = parsed(document);
        EXPECT_EQ(parser->error(), xml_stream_parser::end_of_file) << document.substr(0, 20);
        std::size_t popped = 0;
        for (; !parser->node_queue_empty(); ++popped) parser->node_queue_pop();
        EXPECT_EQ(popped, count) << document.substr(0, 20);
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(30)) << document.substr(0, 20);
    }
    EXPECT_EQ(outcome("<a" + attributes + "\na7=''/>"), "attribute_redefined 2: ");
}
