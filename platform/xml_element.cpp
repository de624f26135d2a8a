#include "platform/xml_element.h"

#include "platform/xml_scanner.h"

namespace NUVEK_2_18::parser {

strings::ustring8 xml_value::resolved() const
{
    strings::ustring8 text;
    append_value(written, text);
    return text;
}

}  // namespace NUVEK_2_18::parser
