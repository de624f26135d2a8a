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
    const char* const results[] = {"no_error",       "file_not_found",   "invalid_format", "collection_error",
                                   "duplicate_item", "duplicate_attrib", "duplicate_map",  "memory_error"};
    const char* const types[] = {"MT_SIMPLE", "MT_COLLECTION", "MT_VECTOR", "MT_VECTOR_COLLECTION", "MT_UNKNOWN"};
    map_collection maps;
    for (int code = -1; code <= 8; ++code) {
        map_error_t error;
        error.line(42);
        error.type(static_cast<map_error_t::result_type>(code));
        EXPECT_EQ(maps.map_error_as_string(error), code < 0 || code > 7 ? "unknown_map_error" : results[code]);
        EXPECT_EQ(error.line(), 42u);
    }
    for (int code = -1; code <= 5; ++code) {
        const auto type = static_cast<map_type>(code);
        EXPECT_EQ(maps.map_type_as_string(type), code < 0 || code > 4 ? "UNKNOWN" : types[code]);
        EXPECT_EQ(map_type_label(type), code < 0 || code > 4 ? "<Unknown>" : types[code]);
    }
}

TEST(Vocabulary, AParserCodeIsTakenForAnother)
{
    const char* const texts[] = {
        "unknown_parse_error", "no_error",         "incomplete",          "unknown_parse_error",
        "end_of_file",         "end_tag_mismatch", "attribute_redefined", "unexpected_character",
        "missing_quote",       "unknown_entity",   "missing_equal",       "fatal_error",
        "file_not_found",      "no_xml_header",    "no_root_tag",         "unknown_parse_error"};
    for (int code = -1; code <= 14; ++code) {
        const auto error = static_cast<xml_stream_parser::error_type>(code);
        EXPECT_EQ(parse_error_as_string(error), texts[code + 1]);
        map_error_t converted = opened().convert_error(error);
        const auto otherwise = code >= 4 && code <= 13 ? map_error_t::invalid_format : map_error_t::no_error;
        EXPECT_EQ(converted.type(), code == 11 ? map_error_t::file_not_found : otherwise) << code;
        EXPECT_EQ(converted.line(), 0u);
    }
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
