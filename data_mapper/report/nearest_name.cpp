#include "data_mapper/report/nearest_name.h"

#include <algorithm>
#include <array>

namespace data_mapper4 {

namespace {

constexpr std::size_t longest_compared = 40;

// The costs of the edits. A name is near if no more than about a quarter of its letters are changed.
constexpr std::size_t whole_edit = 3;
constexpr std::size_t case_edit = 1;

char lower(char letter)
{
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter | 0x20) : letter;
}

// The cost of the cheapest edits that turn one name into the other: letters added, left out, changed or swapped. If
// that is `most` or more, so is the result, which may then be less than the cost.
std::size_t distance(std::string_view a, std::string_view b, std::size_t most)
{
    using row = std::array<std::size_t, longest_compared + 1>;
    const std::size_t reach = most / whole_edit;  // how far a letter may move
    row last = {};
    row current = {};
    for (std::size_t j = 0; j <= b.size(); ++j) current[j] = j * whole_edit;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        const row before_last = last;
        last = current;
        current.fill(most);
        if (i <= reach) current[0] = i * whole_edit;
        std::size_t least = std::min(current[0], most);
        for (std::size_t j = i > reach ? i - reach : 1; j <= std::min(b.size(), i + reach); ++j) {
            const bool is_same_letter = lower(a[i - 1]) == lower(b[j - 1]);
            const std::size_t change = a[i - 1] == b[j - 1] ? 0 : is_same_letter ? case_edit : whole_edit;
            current[j] = std::min({last[j] + whole_edit, current[j - 1] + whole_edit, last[j - 1] + change});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
                current[j] = std::min(current[j], before_last[j - 2] + whole_edit);
            }
            least = std::min(least, current[j]);
        }
        // A swap of two letters continues from the row before the last.
        if (least >= most && *std::min_element(last.begin(), last.end()) >= most) return most;
    }
    return current[b.size()];
}

}  // namespace

std::string_view nearest_name(std::string_view name, const std::vector<ustring8>& candidates, std::size_t most)
{
    std::string_view nearest;
    if (name.size() > longest_compared) return nearest;
    std::size_t least = (name.size() + 2) / 4 * whole_edit + case_edit;
    if (name.size() < 2) least = 0;
    for (std::size_t i = 0; i < candidates.size() && i < most; ++i) {
        const ustring8& candidate = candidates[i];
        if (candidate.size() > longest_compared || candidate == name) continue;
        const std::size_t cost = distance(name, candidate, least);
        if (cost >= least) continue;
        least = cost;
        nearest = candidate;
    }
    return nearest;
}

}  // namespace data_mapper4
