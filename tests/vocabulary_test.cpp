// Codes, kinds and their texts, and the printers.
#include <gtest/gtest.h>

#include "data_mapper/diagnostics/text_dumps.h"
#include "data_mapper/map_collection.h"

using namespace data_mapper4;

namespace {

struct opened : map_collection
{
    using map_collection::convert_error;
};

}  // namespace

TEST(Vocabulary, ATextMovesToAnotherCode)
{
    map_collection maps;
    std::string texts;
    for (int code = -1; code <= map_error_t::memory_error + 1; ++code) {
        map_error_t error;
        error.line(42);
        error.type(static_cast<map_error_t::result_type>(code));
        EXPECT_EQ(error.line(), 42u);
        texts += maps.map_error_as_string(error) + ' ';
    }
    EXPECT_EQ(texts,
              "unknown_map_error no_error file_not_found invalid_format collection_error duplicate_item "
              "duplicate_attrib duplicate_map memory_error unknown_map_error ");
    texts.clear();
    for (int code = -1; code <= MT_UNKNOWN + 1; ++code) {
        const auto type = static_cast<map_type>(code);
        EXPECT_EQ(map_type_label(type), code < 0 || code > 4 ? "<Unknown>" : maps.map_type_as_string(type));
        texts += maps.map_type_as_string(type) + ' ';
    }
    EXPECT_EQ(texts, "UNKNOWN MT_SIMPLE MT_COLLECTION MT_VECTOR MT_VECTOR_COLLECTION MT_UNKNOWN UNKNOWN ");
}

TEST(Vocabulary, AParserCodeIsTakenForAnother)
{
    std::string texts;
    for (int code = -1; code <= 14; ++code) {
        const auto error = static_cast<xml_stream_parser::error_type>(code);
        map_error_t converted = opened().convert_error(error);
        EXPECT_EQ(converted.line(), 0u);
        texts += parse_error_as_string(error) + ' ' + std::to_string(converted.type()) + ", ";
    }
    EXPECT_EQ(texts,
              "unknown_parse_error 0, no_error 0, incomplete 0, unknown_parse_error 0, end_of_file 0, "
              "end_tag_mismatch 2, attribute_redefined 2, unexpected_character 2, missing_quote 2, unknown_entity 2, "
              "missing_equal 2, fatal_error 2, file_not_found 1, no_xml_header 2, no_root_tag 2, "
              "unknown_parse_error 0, ");
}

TEST(Vocabulary, MalformedTextIsLostOrKept)
{
    EXPECT_EQ(NUVEK_2_18::strings::utf8_to_utf16("a\xF0\x90\x80\x80\xE2\x82z\xFF"), u"a\U00010000\uFFFDz\uFFFD");
}

TEST(Diagnostics, ADumpedNodeLosesALine)
{
    xml_stream_parser::node node;
    node.status = xml_stream_parser::incomplete;
    node.tag = "map";
    node.line = 3;
    node.attributes = {{"name", "colors"}, {"b", ""}};
    testing::internal::CaptureStdout();
    dump_node(node, "");
    node.attributes.clear();
    node.data = "x";
    node.status = static_cast<xml_stream_parser::error_type>(2);
    dump_node(node, "first");
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Node tag:  map, line:  3, status = incomplete\n"
              "           Attrib name:  name, value: <colors>\n"
              "           Attrib name:  b, value: <>\n"
              "first node tag:  map, line:  3, status = unknown_parse_error\n"
              "           Data:  x\n");
}
