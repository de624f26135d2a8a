// Prints docs/errors.md: the rules of a check, each with an example, what is printed for it, and the mended example.
#include <iostream>

#include "report_rows.h"

using namespace report_rows;

namespace {

constexpr const char* head =
    R"(# Errors and warnings

These are the rules of `check_maps` and `load_maps`, each with an example, what `load_report::text` prints for it, and
the example mended. "Load" is `map_collection::load`. A fault ends only the file that it is in: load goes on with the
file that includes it. [format.md](format.md) says which kinds of map go on after a faulty arg. Bytes that are not ASCII
are shown as `\xE9`.

This page is made from `tests/report_rows.h` by `scripts/errors_page`.
)";

// The files that are not among the known ones. Bytes that are not printable are written as \xE9.
void print(const files& set, const files& known)
{
    for (std::size_t i = 0; i < set.size(); ++i) {
        if (i < known.size() && known[i] == set[i]) continue;
        if (set.size() != 1) std::cout << "\n`" << set[i].first << "`:\n";
        std::cout << "\n```xml\n";
        for (const char byte : set[i].second) {
            constexpr const char* digits = "0123456789ABCDEF";
            const bool is_printable = byte == '\n' || (byte >= ' ' && byte <= '~');
            if (is_printable) std::cout << byte;
            if (!is_printable) std::cout << "\\x" << digits[(byte & 0xF0) >> 4] << digits[byte & 0x0F];
        }
        std::cout << "```\n";
    }
}

}  // namespace

int main()
{
    std::cout << head;
    for (const row& each : rows) {
        if (!each.sentence.empty()) std::cout << "\n## " << each.rule << "\n\n" << each.sentence << '\n';
        if (each.wrong.empty()) continue;
        std::cout << "\nWrong:\n";
        print(each.wrong, {});
        const auto text = [](const auto& path, const check_options& options) {
            return check_maps(path, options).text();
        };
        std::cout << "\n```text\n" << outcome(each.wrong, each.options, text) << "```\n\nMended:\n";
        print(mended(each), each.wrong);
    }
}
