#include <libxml/xmlreader.h>

#include "contender.h"

namespace bench {

namespace {

using reader_handle = std::unique_ptr<xmlTextReader, decltype(&xmlFreeTextReader)>;

std::string_view text_of(const xmlChar* text)
{
    return reinterpret_cast<const char*>(text);
}

class attribute_cursor
{
public:
    explicit attribute_cursor(xmlTextReader* reader)
        : m_reader(reader), m_is_there(xmlTextReaderMoveToFirstAttribute(reader) == 1)
    {
    }
    bool at_end() const { return !m_is_there; }
    void next() { m_is_there = xmlTextReaderMoveToNextAttribute(m_reader) == 1; }
    std::string_view name() const { return text_of(xmlTextReaderConstLocalName(m_reader)); }
    std::string_view value() const { return text_of(xmlTextReaderConstValue(m_reader)); }

private:
    xmlTextReader* m_reader;
    bool m_is_there;
};

// NOENT resolves references while reading, which is faster than on every request; NOBLANKS leaves out nodes of white
// space. HUGE lifts a limit on the file's size.
constexpr int options = XML_PARSE_NOENT | XML_PARSE_NOBLANKS | XML_PARSE_COMPACT | XML_PARSE_NONET | XML_PARSE_HUGE;

bool read(const std::string& path, table_filler& filler)
{
    const reader_handle reader(xmlReaderForFile(path.c_str(), nullptr, options), xmlFreeTextReader);
    if (!reader) return false;
    int status = xmlTextReaderRead(reader.get());
    for (; status == 1; status = xmlTextReaderRead(reader.get())) {
        if (xmlTextReaderNodeType(reader.get()) != XML_READER_TYPE_ELEMENT) continue;
        const std::string_view tag = text_of(xmlTextReaderConstLocalName(reader.get()));
        if (!filler.take(tag, attribute_cursor(reader.get()))) return false;
    }
    return status == 0;
}

}  // namespace

const peer libxml2_reader = {"libxml2_reader", LIBXML_DOTTED_VERSION, read, nullptr};

}  // namespace bench
