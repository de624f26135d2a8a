#include <libxml/parser.h>

#include <array>
#include <cstdio>

#include "contender.h"

namespace bench {

namespace {

using context_handle = std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)>;

std::string_view text_of(const xmlChar* text)
{
    return reinterpret_cast<const char*>(text);
}

// Five pointers an attribute: name, prefix, URI, and the value from where to where.
class attribute_cursor
{
public:
    attribute_cursor(const xmlChar** attributes, int count) : m_at(attributes), m_end(attributes + 5 * count) {}
    bool at_end() const { return m_at == m_end; }
    void next() { m_at += 5; }
    std::string_view name() const { return text_of(m_at[0]); }
    std::string_view value() const
    {
        return {reinterpret_cast<const char*>(m_at[3]), static_cast<std::size_t>(m_at[4] - m_at[3])};
    }

private:
    const xmlChar** m_at;
    const xmlChar** m_end;
};

struct handler
{
    table_filler* filler;
    xmlParserCtxt* context;
};

void start(void* data, const xmlChar* tag, const xmlChar* /*prefix*/, const xmlChar* /*uri*/, int /*namespaces*/,
           const xmlChar** /*namespace_list*/, int attribute_count, int /*defaulted*/, const xmlChar** attributes)
{
    auto& to = *static_cast<handler*>(data);
    if (!to.filler->take(text_of(tag), attribute_cursor(attributes, attribute_count))) xmlStopParser(to.context);
}

// Pushed in pieces, which is faster than from memory: from there the parser copies the whole text first.
bool push_file(xmlParserCtxt* context, const std::string& path)
{
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
    if (!file) return false;
    std::array<char, 1 << 16> piece;
    std::size_t size = 0;
    do {
        size = std::fread(piece.data(), 1, piece.size(), file.get());
        if (xmlParseChunk(context, piece.data(), static_cast<int>(size), size == 0 ? 1 : 0) != XML_ERR_OK) return false;
    } while (size != 0);
    return std::ferror(file.get()) == 0;
}

// The handlers that are left null are of no use to the tables. NOENT: without it the reference of an ampersand is handed
// out as another reference. HUGE lifts a limit on the file's size.
bool parse_with(xmlSAXHandler handlers, handler to, const std::string& path)
{
    handlers.initialized = XML_SAX2_MAGIC;
    const context_handle context(xmlCreatePushParserCtxt(&handlers, &to, nullptr, 0, nullptr), xmlFreeParserCtxt);
    if (!context) return false;
    to.context = context.get();
    xmlCtxtUseOptions(context.get(), XML_PARSE_NOENT | XML_PARSE_NONET | XML_PARSE_HUGE);
    return push_file(context.get(), path);
}

bool read(const std::string& path, table_filler& filler)
{
    xmlSAXHandler handlers{};
    handlers.startElementNs = start;
    return parse_with(handlers, {&filler, nullptr}, path);
}

bool parse(const std::string& path)
{
    return parse_with({}, {}, path);
}

}  // namespace

const peer libxml2_sax2 = {"libxml2_sax2", LIBXML_DOTTED_VERSION, read, parse};

}  // namespace bench
