// The reader: the documents that it accepts and their nodes; the faults of the others, with their codes and lines.
#include <gtest/gtest.h>

#include <chrono>

#include "documents.h"

using documents::check;
using documents::group;
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
std::string utf16(const std::string& text, bool is_big_endian)
{
    std::string result;
    for (const char character : text) result += is_big_endian ? "\0"s + character : character + "\0"s;
    return result;
}

}  // namespace

TEST(XmlStreamParser, HandsOutNodesInDocumentOrder)
{
    const std::vector<group> rows = {
        {"end_of_file 0: maps+@1 map+@1[name=m] item@1[name=k] arg@1[name=v] /map@1 /maps@1",
         {"<maps><map name=\"m\"><item name=\"k\"/><arg name=\"v\"/></map></maps>"}},
        {"end_of_file 0: a+@1 b@1[name=k][b=2][a=1] /a@1", {"<a><b name='k' b='2' a='1'/></a>"}},
        {"end_of_file 0: a+@1 b+@2 c@3 /b@4 /a@6", {"<a>\n<b>\r<c\r\n/></b>\n\n</a\n>"}},
        // text, in several pieces
        {"end_of_file 0: a@1\"x\"", {"<a>x</a>", "<a>&#x78;</a>", "<a><![CDATA[x]]></a>", "<a><?y z?>x<!--y--></a>"}},
        {"end_of_file 0: a@1\"\x7F\"", {"<a>&#127;</a>"}},
        {"end_of_file 0: a@1\"1<&]]>5\"", {"<a>1<!--2--><![CDATA[<&]]]]><?p 4?>&gt;&#x35;</a>"}},
        {"end_of_file 0: a@1\"1\\102\\103\\134\"", {"<a>1\r\n2\r3&#13;4</a>"}},
        {"end_of_file 0: a@1[b=1 2 3\\94\\13\\10<'\"]", {"<a b='1\r\n2\t3&#9;4&#xD;&#10;&lt;&apos;&quot;'/>"}},
        {"end_of_file 0: a@1[b=\"][c=<>&\"'A]", {"<a\n\tb = '\"' c='&lt;&gt;&amp;&quot;&apos;&#65;' />"}},
        // no text, and what may be around the root
        {"end_of_file 0: a@1",
         {"<a/>", "<a></a >", "<a>&#32;<![CDATA[ ]]></a>", "<?xml version='1.1'?><a/>\n<?q x?><!--c-->",
          "\xEF\xBB\xBF<?xml version='1.0' encoding=\"utf-8\" standalone = 'yes' ?><!--c--> <?p?><a/>"}},
        {"end_of_file 0: a\xC2\xB7\xCC\x80\xE2\x81\x80@1", {"<a\xC2\xB7\xCC\x80\xE2\x81\x80/>"}},
        {"end_of_file 0: :a.b-1@1[_:\xC3\xA9=\xF0\x9F\x98\x80]", {"<:a.b-1 _:\xC3\xA9='\xF0\x9F\x98\x80'/>"}},
        {"end_of_file 0: \xDF\xBF@1[\xDF\xBF=\xC2\x80]\"\xDF\xBF\xC2\x80\"",
         {"<\xDF\xBF \xDF\xBF='\xC2\x80'>\xDF\xBF\xC2\x80</\xDF\xBF>"}},
    };
    check(rows, outcome);
}

TEST(XmlStreamParser, GivesTheTextAfterChildrenToTheClosingNode)
{
    const std::vector<group> rows = {
        {"end_of_file 0: a+@1\"1\" b@1\"2\" c@1 /a@1\"3 4\"", {"<a>1<b>2</b>3<c/> 4</a>"}},
        {"end_of_file 0: a+@1 b@2 /a@2", {"<a> \n<b/>\t</a>"}},
        {"end_of_file 0: r+@1 a+@1 b@1 /a@1 /r@1\"x\"", {"<r><a><b/> </a>x</r>", "<r> <a> <b/> </a>x</r>"}},
        {"end_of_file 0: a+@1\"1\" b@1 c@1 /a@1\" 2\"", {"<a>1<b/> <c/>2</a>", "<a>1<b/><![CDATA[ ]]><c/>2</a>"}},
        {"end_of_file 0: a+@1 b@1 c@1 /a@1\"2 \"", {"<a> <b/>2<!-- --><c/> </a>", "<a><b/>2<?p?><c/>&#32;</a>"}},
        {"unknown_entity 1: a+@1 b@1 c+@1\"y\"", {"<a><b/>x<c>y&z;</c></a>"}},
        {"unknown_entity 1: a+@1 b@1 c@1", {"<a><b/>x<c/>y&z;</a>"}},
        {"end_tag_mismatch 1: r+@1 a+@1\"1\" b@1 /a@1\"2\" c+@1", {"<r><a>1<b/>2</a>3<c></r>"}},
        {"incomplete 0: a+@1\"x\" b@1", {"<a>x<b/>y", "<a>x<b/>y<!-- -->"}},
    };
    check(rows, outcome);
}

TEST(XmlStreamParser, ReportsTheFirstFaultWithItsLine)
{
    const std::string eight = "<a b1='' b2='' b3='' b4='' b5='' b6='' b7='' b8=''";
    const std::string long_name(64, 'b');
    const std::vector<group> rows = {
        {"no_root_tag 1: ", {"", " <!--c-->", "<!DOCTYPE a>"}},
        {"no_root_tag 3: ", {"\r\n\r<?p?>"}},
        {"incomplete 0: a+@1 b+@2", {"<a>\n<b>", "<a>\n<b><!-- -->\n"}},
        {"end_tag_mismatch 2: a+@1", {"<a>\n</b>", "<a>\n</aa>", "<a>\n</A>"}},
        {"end_tag_mismatch 1: a+@1 b+@1", {"<a><b></a></b>"}},
        {"end_tag_mismatch 1: a@1", {"<a/></a>"}},
        {"end_tag_mismatch 1: ", {"</a>"}},
        {"attribute_redefined 2: ",
         {"<a b='1' c='2'\nb='3'/>", "<a b='1'\nb='2' c/>", "<a bbbbbbbb=''\nbbbbbbbb=''/>", eight + "\nb8=''/>",
          "<a bbbbbbbbb=''\nbbbbbbbbb=''/>", eight + " b9=''\nb9=''\nb8=''/>",
          "<a " + long_name + "='' b=''\n" + long_name + "=''/>"}},
        {"missing_equal 2: r+@1", {"<r><a b\n'1'/>", "<r><a b\n/>", "<r><a b\n>", "<r><a b=''\nc'1'/>"}},
        {"missing_quote 1: r+@1",
         {"<r><a b=1/>", "<r><a b=", "<r><a b='1", "<r><a b='&l", "<r><a b='&#", "<r><a b=\"'/>"}},
        {"missing_quote 3: ", {"<a b='1\n\n/>"}},
        {"unknown_entity 1: ", {"<a b='&c;'/>", "<a b='&LT;'/>"}},
        {"unknown_entity 1: a+@1\"x\"", {"<!DOCTYPE a [<!ENTITY c 'd'>]><a>x&c;</a>"}},
        {"unexpected_character 2: a@1",
         {"<a/>\nx", "<a/>\n<b/>", "<a/>\n&amp;", "<a/>\n<![CDATA[]]>", "<a/>\n<!DOCTYPE a>"}},
        {"unexpected_character 1: a+@1\"x\"", {"<a>x&c</a>", "<a>x& </a>", "<a>x]]></a>", "<a>x<", "<a>x<!b"}},
        {"unexpected_character 1: a+@1\"]\"", {"<a>]]]></a>"}},
        // in the prolog
        {"unexpected_character 1: ",
         {"x<a/>", "< a/>", "<1/>", "&amp;<a/>", " <?xml version='1.0'?><a/>", "<?xml?><a/>",
          "<?xml version='2.0'?><a/>", "<?xml version='1.'?><a/>", "<?xml version='1.a'?><a/>",
          "<?xml version='1.0' x?><a/>", "<?xml encoding='UTF-8'?><a/>", "<?xml version='1.0' standalone='1'?><a/>",
          "<?xml version='1.0'standalone='yes'?><a/>"}},
    };
    check(rows, outcome);
    const std::vector<group> within = {
        {"unexpected_character 1: a+@1",
         {"&#0;</a>", "&#xD800;</a>", "&#x110000;</a>", "&#4294967361;</a>", "&#;</a>", "&#x;</a>", "&#X41;</a>",
          "&#xg;</a>", "&#x1g;</a>", "</a", "</a b='1'>", "</ a>", "<!-- -- --></a>", "<!--->", "<![CDATA[x]]</a>",
          "<?XmL x?></a>", "<?p", "<?p?x?></a>",
          // in a tag
          "<b/ ></a>", "<b c='1'd='2'/></a>", "<b 1=''/>", "<b =''/>", "<b c='<'/>", "<b c='&amp'/>", "<b c",
          "<b c='1' ", "<1/>", "< b/>", "<\xC3\x97/>", "<\xC2\xB7/>", "<\xCC\x80/>", "<b\xC3\x97/>"}},
    };
    check(within, [](const std::string& content) { return outcome("<a>" + content); });
    EXPECT_EQ(parsed("<?xml version='1.0'?><a/>", 0, 0)->error(), xml_stream_parser::end_of_file);
    EXPECT_EQ(parsed("<?xml-p version='1.0'?><a/>", 0, 1)->error(), xml_stream_parser::no_xml_header);
    EXPECT_EQ(parsed("<a/>", 0, 3)->error(), xml_stream_parser::end_of_file);
}

// The subset's last comment and instruction hide a bracket each.
TEST(XmlStreamParser, ChecksTheShapeOfADoctype)
{
    const std::string whole =
        "<!DOCTYPE a PUBLIC \"-//x'y\" ']>' [<!ENTITY e \"]>\"> %e; <!--]>--><?p ]>?><!ATTLIST a b CDATA '>]' > ] >";
    const std::vector<group> rows = {
        {"end_of_file 0: a@1",
         {whole.substr(10) + "<a/>", "a SYSTEM 'x'><a/>", "\ta SYSTEM \"]'>\"[]><a/>", "a PUBLIC 'p' \"']>\" [ ] ><a/>",
          "a[] ><a/>", "\xC3\xA9 ><a/>"}},
        {"unexpected_character 1: ",
         {"a><!DOCTYPE a><a/>", "><a/>", "a SYSTEM><a/>", "a SYSTEM's'><a/>", "aSYSTEM 's'><a/>", "a 's'><a/>",
          "a SYSTEM 's' 't'><a/>", "a PUBLIC'p' 's'><a/>", "a PUBLIC 'p''s'><a/>", "a PUBLIC '{' 's'><a/>",
          "a PUBLIC 'p'><a/>", "a PUBLIC \"p' 's'><a/>", "a PUBLIC 'p'q' 's'><a/>",
          // in or after the subset
          "a [] SYSTEM 's'><a/>", "a [] []><a/>", "a []]><a/>", "a [<!ELEMENT b '>]><a/>", "a [<!ELEMENTb>]><a/>",
          "a [<!OTHER b>]><a/>", "a [<!ENTITY b <c>]><a/>", "a [<![INCLUDE[]]>]><a/>", "a [x]><a/>", "a [x;]><a/>",
          "a [%;]><a/>", "a [%b]><a/>", "a [<?xml p?>]><a/>"}},
    };
    check(rows, [](const std::string& rest) { return outcome("<!DOCTYPE " + rest); });
    check({{"unexpected_character 1: ", {"<!DOCTYPEa><a/>", "<!DOCTYPE><a/>", "<!doctype a><a/>"}}}, outcome);
    for (std::size_t size = 1; size < whole.size(); ++size) {
        EXPECT_EQ(outcome(whole.substr(0, size)), "unexpected_character 1: ") << size;
    }
}

// Bytes are scanned in blocks: what ends a run may be anywhere in one.
TEST(XmlStreamParser, FindsTheEndOfARunOfAnyLength)
{
    for (std::size_t size = 0; size <= 70; ++size) {
        const std::string run(size, 'x');
        EXPECT_EQ(outcome("<a b='" + run + "&lt;' c" + run + "='" + run + "\"\t" + run + "'/>"),
                  "end_of_file 0: a@1[b=" + run + "<][c" + run + '=' + run + "\" " + run + ']');
        EXPECT_EQ(outcome("<a>" + run + "]&amp;\xC3\xA9\r" + run + "\r\n<!--" + run + "--></a>"),
                  "end_of_file 0: a@1\"" + run + "]&\xC3\xA9\\10" + run + "\\10\"");
        EXPECT_EQ(outcome("<a>y" + run + '\x1F' + run + "</a>"), "unexpected_character 1: a+@1\"y" + run + '"');
        EXPECT_EQ(outcome("<a b='" + run + "<'/>"), "unexpected_character 1: ");
        EXPECT_EQ(outcome("<a>" + std::string(size, '\n') + run + "<b/></c>"),
                  "end_tag_mismatch " + std::to_string(size + 1) + ": a+@1" +
                      (size == 0 ? "" : '"' + repeated("\\10", size) + run + '"') + " b@" + std::to_string(size + 1));
    }
}

// Attributes and tags that are too large to be indexed with their sizes.
TEST(XmlStreamParser, ReadsAttributesAndTagsOfAnySize)
{
    for (std::size_t gap = 0; gap < 6; ++gap) {
        const std::string equal = std::string(gap / 2, ' ') + '=' + std::string(gap - gap / 2, '\n');
        for (const std::size_t name_size : {1U, 63U, 64U, 70U}) {
            for (const std::size_t value_size : {0U, 8191U, 8192U, 20000U}) {
                const std::string name(name_size, 'n');
                const std::string value(value_size, 'v');
                const std::string tag =
                    "<a " + name + equal + '"' + value + "\" b" + equal + "'&#9;" + value + "' c" + equal + "'";
                EXPECT_EQ(outcome(tag + "'>x</a>"),
                          "end_of_file 0: a@1[" + name + '=' + value + "][b=\\9" + value + "][c=]\"x\"");
            }
        }
    }
    for (const std::size_t size : {(1U << 21) - 2, (1U << 21) - 1, 1U << 21, (1U << 21) + 9}) {
        const std::string tag(size, 't');
        const std::string expected = "end_of_file 0: " + tag + "+@1[b=1] c@1 /" + tag + "@1\"x\"";
        EXPECT_TRUE(outcome('<' + tag + " b='1'><c/>x</" + tag + "\n>") == expected) << size;
        EXPECT_EQ(parsed('<' + tag + "></" + tag + "t>")->error(), xml_stream_parser::end_tag_mismatch) << size;
    }
}

TEST(XmlStreamParser, DecodesWhatTheBytesAndTheHeaderSay)
{
    const std::string header = "<?xml version='1.0' encoding='";
    const std::string sound = "<a b='1'/>";
    const std::vector<group> rows = {
        {"end_of_file 0: a@1\"\xC3\xA4\xE2\x82\xAC\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBD\xF0\x90\x80\x80\"",
         {"<a>\xC3\xA4\xE2\x82\xAC\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBD\xF0\x90\x80\x80</a>"}},
        {"end_of_file 0: a@2\"\xC3\xA4\"", {header + "iso-8859-1'?>\n<a>\xE4</a>"}},
        {"end_of_file 0: a@1[b=1]",
         {header + "US-ASCII'?>" + sound, "\xFF\xFE" + utf16(sound, false), "\xFE\xFF" + utf16(sound, true),
          utf16(" " + sound, false), utf16(header + "UTF-16'?>" + sound, true),
          "\xFF\xFE" + utf16(header + "utf-16le'?>" + sound, false)}},
        {"end_of_file 0: a@1\"\xF0\x9F\x98\x80\"",
         {"\xFE\xFF" + utf16("<a>", true) + "\xD8\x3D\xDE\x00"s + utf16("</a>", true)}},
        // malformed, or not a character of XML
        {"unexpected_character 1: a+@1\"x\"",
         {"<a>x\xC0\xAF</a>", "<a>x\xC1\xBF</a>", "<a>x\xC2</a>", "<a>x\xDF\xC0</a>", "<a>x\xED\xA0\x80</a>",
          "<a>x\xF4\x90\x80\x80</a>", "<a>x\xE2\x82</a>", "<a>x\xE2\x82\xC0</a>", "<a>x\x80</a>",
          "<a>x\xEF\xBF\xBE</a>", "<a>x\x01</a>", "<a>x\xE0\x9F\xBF</a>", "<a>x\xF0\x8F\xBF\xBF</a>",
          "<a>x\xC3\xC3</a>", "\xFF\xFE" + utf16("<a>x", false) + "\x3D\xDE" + utf16("</a>", false),
          "\xFE\xFF" + utf16("<a>x", true) + "\xD8\x3D" + utf16("</a>", true)}},
        {"unexpected_character 1: ", {"<a b='\xC3"}},
        {"unexpected_character 1: a@1", {"<a/>\0"s, "\xFF\xFE" + utf16("<a/>", false) + "\n"}},
        {"unexpected_character 2: a+@2",
         {header + "US-ASCII'?>\n<a>\xE4</a>", header + "US-ASCII'?>\n<a>\xC3\xA4</a>"}},
        // an unknown encoding, or one that the bytes contradict
        {"fatal_error 2: ", {"<?xml version='1.0'\nencoding='KOI8-R'?><a/>"}},
        {"fatal_error 1: ",
         {header + "UTF-16'?><a/>", "\xEF\xBB\xBF" + header + "ISO-8859-1'?><a/>",
          "\xFF\xFE" + utf16(header + "UTF-16BE'?><a/>", false), "\xFE\xFF" + utf16(header + "UTF-8'?><a/>", true)}},
        {"unexpected_character 1: ", {header + "8-bit'?><a/>", header + "_a'?><a/>", header + "a:b'?><a/>"}},
    };
    check(rows, outcome);
}

// The place is that of the fault itself; columns are bytes of UTF-8.
TEST(XmlStreamParser, SaysWhatIsWrongAndWhere)
{
    const std::vector<group> rows = {
        {"0:0 ", {"<a/>", "<a>", "<a>\n"}},
        {"2:3 the end tag does not match the open element", {"<a>\n  </b>", "<a><b/></a>\n  </a>"}},
        {"1:10 an attribute is given twice", {"<a b='1' b='2' c>"}},
        {"1:9 expected a quote around the attribute value", {"<\xC3\xA9 b = c/>", "<a b='12"}},
        {"1:4 unknown entity", {"<a>&b;</a>"}},
        {"1:6 expected = after the attribute name", {"<a b />"}},
        {"1:37 the encoding is not supported, or is not that of the file",
         {"<?xml version='1.0' encoding='KOI8-R'?><a/>"}},
        {"2:1 there is no element", {"<!---->\n"}},
        {"1:6 bytes that are not UTF-8", {"<a>  \xFF</a>", "<a>\xC3\xA9\xE9</a>", "<a>  \x93</a>"}},
        {"1:47 a byte that is not ASCII", {"<?xml version='1.0' encoding='US-ASCII'?><a b=\xC3\xA9"}},
        {"1:2 bytes that are not UTF-16", {"\xFE\xFF\0<\xD8\0"s}},
        {"1:4 a character that XML does not allow", {"<a>\1", "<a>\xEF\xBF\xBF"}},
        {"1:5 the file ends inside markup", {"<a b", "<!--"}},
        {"1:6 expected a name", {"<a></ a>"}},
        {"1:5 < does not begin a tag here", {"<a><>", "<a><1"}},
        {"1:9 expected > at the end of the tag", {"<a b='1'<", "<a> </a b>"}},
        {"1:9 expected white space", {"<a b='1'c='2'/>"}},
        {"1:7 < is not allowed in an attribute value", {"<a b='<'/>"}},
        {"1:5 & does not begin a reference here", {"<a>& b</a>"}},
        {"1:6 expected ; at the end of the reference", {"<a>&b c</a>"}},
        {"1:4 the reference is not to a character of XML", {"<a>&#0;</a>"}},
        {"1:5 ]]> is not allowed in text", {"<a>]]]></a>"}},
        {"1:6 -- is not allowed in a comment", {"<!-- -- --><a/>"}},
        {"1:1 a processing instruction must not be called xml", {"<?XML ?><a/>"}},
        {"1:2 an XML declaration must be the first thing in the file", {" <?xml version='1.0'?><a/>"}},
        {"1:5 text outside the root element", {"<a/>b"}},
        {"1:5 a second root element", {"<a/><b/>"}},
        {"1:5 a document type declaration that is faulty or out of place", {"<a/><!DOCTYPE a>"}},
        {"1:21 a faulty XML declaration", {"<?xml version='1.0' a='1'?><a/>"}},
    };
    check(rows, [](const std::string& document) {
        const auto parser = parsed(document);
        return std::to_string(parser->error_line()) + ':' + std::to_string(parser->error_column()) + ' ' +
               parser->error_text();
    });
}

TEST(XmlStreamParser, OpensRegularFilesOnly)
{
    const documents::folder folder;
    folder.write("there/a.xml", "<a/>");
    folder.write("there/\xC3\xA9\xF0\x9F\x98\x80.xml", "<a/>");
    const std::u16string base = documents::units(folder.path(""));
    // The last path is too long for a single name.
    for (const auto& name : {u"there\\a.xml"s, u"there/a.xml"s, u"there\\\u00E9\U0001F600.xml"s,
                             std::u16string(300, u'\\') + u"there\\a.xml"}) {
        EXPECT_EQ(xml_stream_parser(base + name, 2).error(), xml_stream_parser::no_error);
    }
    std::vector<std::u16string> others = {u"",
                                          base + u"there",
                                          base + u"b.xml",
                                          base + u"there\\a.xml\\b",
                                          base + u"there\\a.xml"s + u'\0',
                                          base + u"there\\" + char16_t{0xD800},
                                          std::u16string(40000, u'/') + base + u"there/a.xml"};
#if defined(__linux__)
    ASSERT_EQ(::mkfifo(folder.system_path("pipe").c_str(), 0600), 0);
    others.insert(others.end(), {u"/dev/null", base + u"pipe"});
    EXPECT_EQ(xml_stream_parser(u"/proc/self/mem", 0).parse(), xml_stream_parser::fatal_error) << "it cannot be read";
#endif
    for (const auto& path : others) {
        xml_stream_parser parser(path, 2);
        EXPECT_EQ(parser.error(), xml_stream_parser::file_not_found);
        EXPECT_TRUE(parser.parse() == xml_stream_parser::file_not_found && parser.error_line() == 0);
        EXPECT_EQ(nodes(parser), "");
    }
}

#if defined(__linux__)
// The path as given takes precedence if it names a regular file, although the backslash could be a separator.
TEST(XmlStreamParser, TriesTheSystemsSeparatorUnlessThePathIsARegularFile)
{
    const documents::folder folder;
    folder.write("there/a.xml", "<separated/>");
    const auto literal = folder.system_path("there\\a.xml");
    const auto read = [&] {
        xml_stream_parser parser(documents::units(literal.wstring()), 2);
        parser.parse();
        return nodes(parser);
    };
    std::filesystem::create_directory(literal);
    EXPECT_EQ(read(), "separated@1") << "a folder";
    std::filesystem::remove(literal);
    std::filesystem::create_symlink(literal, literal);
    EXPECT_EQ(read(), "separated@1") << "a symbolic link to itself";
    std::filesystem::remove(literal);
    folder.write("there\\a.xml", "<literal/>");
    EXPECT_EQ(read(), "literal@1");
}
#endif

TEST(XmlStreamParser, GivesANewDefaultNodeIfTheQueueIsEmpty)
{
    const documents::folder folder;
    folder.write("a", "<a/>");
    xml_stream_parser parser(documents::units(folder.path("a")), 2);
    const auto expect_default_nodes = [&] {
        EXPECT_TRUE(parser.node_queue_empty() && parser.node_queue_front().tag.empty());
        parser.node_queue_front().tag = "changed";
        EXPECT_EQ(parser.node_queue_front().tag, "");
        parser.node_queue_front().tag = "changed";
        EXPECT_EQ(parser.node_queue_pop().tag, "");
    };
    expect_default_nodes();
    parser.node_queue_front().tag = "changed";
    parser.parse();
    EXPECT_EQ(parser.node_queue_front().tag, "a");
    parser.node_queue_front().attributes = {{"b", "1"}};
    EXPECT_EQ(nodes(parser), "a@1[b=1]") << "a change of a node that is in the queue";
    expect_default_nodes();
}

// Sizes at which anything that recurses, or grows with the square of its input, does not return.
TEST(XmlStreamParser, ReadsHugeDocumentsInLinearTime)
{
    const std::size_t many = 500000;
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
        std::size_t popped = 0;
        for (; !parser->node_queue_empty(); ++popped) parser->node_queue_pop();
        EXPECT_TRUE(parser->error() == xml_stream_parser::end_of_file && popped == count) << document.substr(0, 20);
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(30)) << document.substr(0, 20);
    }
    EXPECT_EQ(outcome("<a" + attributes + "\na7=''/>"), "attribute_redefined 2: ");
}
