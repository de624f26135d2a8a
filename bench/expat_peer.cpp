#include <expat.h>

#include <type_traits>

#include "contender.h"

namespace bench {

namespace {

using parser_handle = std::unique_ptr<std::remove_pointer_t<XML_Parser>, decltype(&XML_ParserFree)>;

class attribute_cursor
{
public:
    explicit attribute_cursor(const char** pairs) : m_at(pairs) {}
    bool at_end() const { return *m_at == nullptr; }
    void next() { m_at += 2; }
    std::string_view name() const { return m_at[0]; }
    std::string_view value() const { return m_at[1]; }

private:
    const char** m_at;
};

struct handler
{
    XML_Parser parser;
    table_filler& filler;
};

void start(void* data, const char* tag, const char** attributes)
{
    auto& to = *static_cast<handler*>(data);
    if (!to.filler.take(tag, attribute_cursor(attributes))) XML_StopParser(to.parser, XML_FALSE);
}

// The whole text at once, which is faster than in pieces, though it takes the memory of the file.
bool parse_with(XML_Parser parser, const std::string& path)
{
    const file_text text = read_file(path);
    return text.bytes && XML_Parse(parser, text.bytes.get(), static_cast<int>(text.size), 1) == XML_STATUS_OK;
}

bool read(const std::string& path, table_filler& filler)
{
    const parser_handle parser(XML_ParserCreate(nullptr), XML_ParserFree);
    handler to{parser.get(), filler};
    XML_SetUserData(parser.get(), &to);
    XML_SetStartElementHandler(parser.get(), start);
    return parse_with(parser.get(), path);
}

bool parse(const std::string& path)
{
    const parser_handle parser(XML_ParserCreate(nullptr), XML_ParserFree);
    return parse_with(parser.get(), path);
}

}  // namespace

const peer expat = {"expat", XML_ExpatVersion(), read, parse};

}  // namespace bench
