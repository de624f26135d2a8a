// Any bytes at all, read as a document: no crash, and what the check found is what the nodes show.
#include <cstdint>
#include <cstdlib>

#include "platform/text_encoding.h"
#include "platform/xml_document.h"
#include "platform/xml_node_reader.h"

namespace {

using namespace NUVEK_2_18::parser;

void require(bool condition)
{
    if (!condition) std::abort();
}

// The nodes are counted rightly, and nest: every closing node has the tag of the innermost start node still open.
std::size_t read_nodes(std::string_view sound, const checked_document& checked)
{
    xml_node_reader reader(sound);
    std::vector<NUVEK_2_18::strings::ustring8> open;
    unsigned long line = 1;
    for (std::size_t i = 0; i < checked.nodes; ++i) {
        const xml_stream_parser::node node = reader.read();
        require(node.line >= line && !node.tag.empty());
        line = node.line;
        if (node.closing) {
            require(!open.empty() && open.back() == node.tag);
            open.pop_back();
        }
        require(node.depth == open.size());
        if (node.status == xml_stream_parser::incomplete) open.push_back(node.tag);
    }
    return open.size();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const document_text document = decode_document({reinterpret_cast<const char*>(data), size});
    const checked_document checked = check_document(document, true);
    const std::string_view sound = std::string_view(document.text).substr(0, checked.sound_size);
    const std::size_t open = read_nodes(sound, checked);
    require(checked.outcome != xml_stream_parser::end_of_file || open == 0);
    require(checked.outcome != xml_stream_parser::incomplete || open != 0);

    // What stands before a fault is sound by itself, and holds the same nodes.
    const checked_document again = check_document({std::string(sound), xml_stream_parser::no_error}, true);
    require(again.sound_size == sound.size() && again.nodes == checked.nodes);
    return 0;
}
