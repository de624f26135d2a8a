// Internal: names in messages. They come from files and may be long, or contain what a terminal takes for a command.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string_view>
#include <vector>

#include "platform/ustring.h"

namespace data_mapper4 {

using NUVEK_2_18::strings::ustring8;

// Returns the name with what is not printable escaped, cut to 80 code points.
ustring8 escaped(std::string_view name);

// The same in quotes, and as a tag: <item>.
ustring8 in_quotes(std::string_view name);
ustring8 as_tag(std::string_view name);

// Returns the names separated by commas, only the first few if there are many.
ustring8 listed(const std::vector<ustring8>& names);

// Returns `; did you mean WHAT?`, or nothing if `what` is empty.
ustring8 did_you_mean(const ustring8& what);

// Return the path in UTF-16 and in UTF-8. What is not Unicode becomes U+FFFD, except unpaired surrogates in UTF-16.
NUVEK_2_18::strings::ustring16 path_units(const std::filesystem::path& path);
ustring8 path_text(const std::filesystem::path& path);

// Returns the text with its middle replaced by three dots if it has more bytes than this; the text is UTF-8.
ustring8 shortened(const ustring8& text, std::size_t most_bytes);

// Returns the line with the code points that a terminal may not print as one character replaced by
// U+FFFD; tabs are kept.
ustring8 printable(std::string_view line);

}  // namespace data_mapper4
