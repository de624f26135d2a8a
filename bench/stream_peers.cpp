// The peers that report elements while they read.
#include <expat.h>
#include <libxml/parser.h>
#include <libxml/xmlreader.h>

#include <array>
#include <cstdio>
#include <type_traits>

#include "contender.h"

namespace bench {

namespace {

const char* text_of(const xmlChar* text)
{
    return reinterpret_cast<const char*>(text);
}

void start_expat(void* filler, const char* tag, const char** attributes)
{
    static_cast<table_filler*>(filler)->take(tag, [attributes](const auto& take_attribute) {
        for (auto at = attributes; *at != nullptr && take_attribute(at[0], std::string_view(at[1])); at += 2) {
        }
    });
}

// Parses the whole text at once, which is faster than in pieces, although the file must be in memory.
bool read_expat(const std::string& path, table_filler* filler)
{
    const std::unique_ptr<std::remove_pointer_t<XML_Parser>, decltype(&XML_ParserFree)> parser(
        XML_ParserCreate(nullptr), XML_ParserFree);
    XML_SetUserData(parser.get(), filler);
    if (filler != nullptr) XML_SetStartElementHandler(parser.get(), start_expat);
    const file_text text = read_file(path);
    return text.bytes && XML_Parse(parser.get(), text.bytes.get(), static_cast<int>(text.size), 1) == XML_STATUS_OK;
}

// Five pointers for each attribute: name, prefix, URI, and the begin and end of the value.
void start_libxml2(void* filler, const xmlChar* tag, const xmlChar* /*prefix*/, const xmlChar* /*uri*/,
                   int /*namespaces*/, const xmlChar** /*namespace_list*/, int attribute_count, int /*defaulted*/,
                   const xmlChar** attributes)
{
    static_cast<table_filler*>(filler)->take(text_of(tag), [=](const auto& take_attribute) {
        const auto end = attributes + 5 * attribute_count;
        for (auto at = attributes; at != end; at += 5) {
            const std::string_view value(text_of(at[3]), static_cast<std::size_t>(at[4] - at[3]));
            if (!take_attribute(text_of(at[0]), value)) return;
        }
    });
}

// Pushes the text in pieces, which is faster than from memory, because there the parser first copies the whole text.
// The tables do not need the handlers that are left null. NOENT: without it, a reference to an ampersand is reported as
// another reference. HUGE lifts a limit on the file's size.
bool read_libxml2_sax2(const std::string& path, table_filler* filler)
{
    xmlSAXHandler handlers{};
    handlers.initialized = XML_SAX2_MAGIC;
    if (filler != nullptr) handlers.startElementNs = start_libxml2;
    const std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)> context(
        xmlCreatePushParserCtxt(&handlers, filler, nullptr, 0, nullptr), xmlFreeParserCtxt);
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
    if (!context || !file) return false;
    xmlCtxtUseOptions(context.get(), XML_PARSE_NOENT | XML_PARSE_NONET | XML_PARSE_HUGE);
    std::array<char, 1 << 16> piece;
    std::size_t size = 0;
    do {
        size = std::fread(piece.data(), 1, piece.size(), file.get());
        if (xmlParseChunk(context.get(), piece.data(), static_cast<int>(size), size == 0) != XML_ERR_OK) return false;
    } while (size != 0);
    return std::ferror(file.get()) == 0;
}

// NOENT resolves references while reading, which is faster than on every request; NOBLANKS skips nodes of white space.
// HUGE lifts a limit on the file's size.
bool read_libxml2_reader(const std::string& path, table_filler* filler)
{
    constexpr int options = XML_PARSE_NOENT | XML_PARSE_NOBLANKS | XML_PARSE_COMPACT | XML_PARSE_NONET | XML_PARSE_HUGE;
    const std::unique_ptr<xmlTextReader, decltype(&xmlFreeTextReader)> handle(
        xmlReaderForFile(path.c_str(), nullptr, options), xmlFreeTextReader);
    xmlTextReader* const reader = handle.get();
    if (reader == nullptr) return false;
    int status = xmlTextReaderRead(reader);
    for (; status == 1; status = xmlTextReaderRead(reader)) {
        if (xmlTextReaderNodeType(reader) != XML_READER_TYPE_ELEMENT) continue;
        filler->take(text_of(xmlTextReaderConstLocalName(reader)), [reader](const auto& take_attribute) {
            int found = xmlTextReaderMoveToFirstAttribute(reader);
            for (; found == 1; found = xmlTextReaderMoveToNextAttribute(reader)) {
                const std::string_view value = text_of(xmlTextReaderConstValue(reader));
                if (!take_attribute(text_of(xmlTextReaderConstLocalName(reader)), value)) return;
            }
        });
    }
    return status == 0;
}

}  // namespace

const peer expat = {"expat", XML_ExpatVersion(), read_expat, true};
const peer libxml2_sax2 = {"libxml2_sax2", LIBXML_DOTTED_VERSION, read_libxml2_sax2, true};
const peer libxml2_reader = {"libxml2_reader", LIBXML_DOTTED_VERSION, read_libxml2_reader, false};

}  // namespace bench
