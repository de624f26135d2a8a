#include "platform/xml_element.h"

#include "platform/xml_reference.h"

namespace NUVEK_2_18::parser {

strings::ustring8 xml_value::normalized() const
{
    strings::ustring8 text;
    append_value(raw, text);
    return text;
}

}  // namespace NUVEK_2_18::parser
