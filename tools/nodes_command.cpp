#include <iostream>

#include "data_mapper/diagnostics/text_dumps.h"
#include "data_mapper/report/wording.h"
#include "platform/xml_stream_parser.h"
#include "tools/commands.h"
#include "tools/master_file.h"

namespace data_mapper4::tool {

namespace {

using NUVEK_2_18::parser::xml_stream_parser;

const char* prefix_of(const xml_stream_parser::node& node)
{
    if (node.closing) return "Closing";
    return node.status == xml_stream_parser::incomplete ? "Start" : "";
}

// Stops early if nobody reads the output any more.
void print_nodes(xml_stream_parser& parser)
{
    while (!parser.node_queue_empty() && std::cout.good()) {
        const xml_stream_parser::node node = parser.node_queue_pop();
        dump_node(node, prefix_of(node));
    }
}

// To the parser, a document that ends early has no fault.
void report_fault(const xml_stream_parser& parser, const std::filesystem::path& file)
{
    std::cerr << printable(file.u8string()) << ':';
    if (parser.error_line() == 0) {
        std::cerr << " error: the file ends before its last element does\n";
    } else {
        std::cerr << parser.error_line() << ':' << parser.error_column() << ": error: " << parser.error_text() << '\n';
    }
}

}  // namespace

exit_code run_nodes(const command_options& options)
{
    const auto& file = options.files.front();
    xml_stream_parser parser(parser_path(file), xml_stream_parser::header_optional);
    if (parser.error() == xml_stream_parser::file_not_found) return report_missing(file);
    parser.parse();
    print_nodes(parser);
    if (parser.error() == xml_stream_parser::end_of_file) return success;
    report_fault(parser, file);
    return failure;
}

}  // namespace data_mapper4::tool
