// Codes, kinds and their texts, and the printers.
#include <gtest/gtest.h>

#include <algorithm>

#include "data_mapper/diagnostics/text_dumps.h"
#include "data_mapper/map_collection.h"

using namespace data_mapper4;

namespace {

struct opened : map_collection
{
    using map_collection::convert_error;
};

}  // namespace

TEST(Vocabulary, HasOneTextForEachCode)
{
    opened maps;
    std::string results, types, errors;
    for (int code = -1; code <= 14; ++code) {
        map_error_t error;
        error.type(static_cast<map_error_t::result_type>(code));
        if (code < 9) results += maps.map_error_as_string(error) + ' ';
        const auto type = static_cast<map_type>(code);
        EXPECT_EQ(map_type_label(type), code < 0 || code > 4 ? "<Unknown>" : maps.map_type_as_string(type));
        if (code < 6) types += maps.map_type_as_string(type) + ' ';
        const auto parse_error = static_cast<xml_stream_parser::error_type>(code);
        errors +=
            parse_error_as_string(parse_error) + ' ' + std::to_string(maps.convert_error(parse_error).type()) + ' ';
    }
    EXPECT_EQ(results,
              "unknown_map_error no_error file_not_found invalid_format collection_error duplicate_item "
              "duplicate_attrib duplicate_map memory_error unknown_map_error ");
    EXPECT_EQ(types, "UNKNOWN MT_SIMPLE MT_COLLECTION MT_VECTOR MT_VECTOR_COLLECTION MT_UNKNOWN UNKNOWN ");
    EXPECT_EQ(errors,
              "unknown_parse_error 0 no_error 0 incomplete 0 unknown_parse_error 0 end_of_file 0 end_tag_mismatch 2 "
              "attribute_redefined 2 unexpected_character 2 missing_quote 2 unknown_entity 2 missing_equal 2 "
              "fatal_error 2 file_not_found 1 no_xml_header 2 no_root_tag 2 unknown_parse_error 0 ");
}

TEST(Unicode, ReplacesEachMalformedRunOfUtf8)
{
    const std::pair<std::string, std::u16string> rows[] = {
        {std::string("\0a\x7F", 3), std::u16string(u"\0a\x7F", 3)},
        {"\xC2\x80\xDF\xBF\xE0\xA0\x80", u"\x80\u07FF\u0800"},
        {"\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF", u"\uD7FF\uE000\uFFFF"},
        {"\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", u"\U00010000\U0010FFFF"},
        // a run is a sequence that is cut, or a single byte
        {"a\xC2z\xE2\x82z\xF0\x90\x80z\xF4\x8F", u"a?z?z?z?"},
        {"\xC3\xC3\xA9\xE2\x82\xE2\x82\xAC", u"?\u00E9?\u20AC"},
        {"\x80\xBFz\xC0\xAF\xC1\xBFz\xFE\xFF", u"??z????z??"},
        {"\xE0\x9F\xBFz\xF0\x8F\xBF\xBFz\xF4\x90\x80\x80z\xF5\x80\x80\x80", u"???z????z????z????"},
    };
    for (auto [text, expected] : rows) {
        std::replace(expected.begin(), expected.end(), u'?', u'\uFFFD');
        EXPECT_EQ(NUVEK_2_18::strings::utf8_to_utf16(text), expected) << text;
    }
    std::string surrogates;
    for (int i = 0; i < 0x800; ++i) {
        surrogates += {'\xED', static_cast<char>(0xA0 + i / 0x40), static_cast<char>(0x80 + i % 0x40)};
    }
    EXPECT_EQ(NUVEK_2_18::strings::utf8_to_utf16(surrogates), std::u16string(surrogates.size(), u'\uFFFD'));
}

TEST(Diagnostics, DumpANodeLineByLine)
{
    xml_stream_parser::node node;
    node.status = xml_stream_parser::incomplete;
    node.tag = "map";
    node.line = 3;
    testing::internal::CaptureStdout();
    dump_node(node, "");
    node.attributes = {{"name", "colors"}, {"b", ""}};
    node.data = "x";
    dump_node(node, "first");
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Node tag:  map, line:  3, status = incomplete\n"
              "first node tag:  map, line:  3, status = incomplete\n"
              "           Attrib name:  name, value: <colors>\n"
              "           Attrib name:  b, value: <>\n"
              "           Data:  x\n");
}
