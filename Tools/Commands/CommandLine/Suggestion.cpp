#include "Tools/Commands/CommandLine/Suggestion.h"

#include <algorithm>
#include <numeric>

namespace quen::tools {

namespace {

/// How many characters must be put in, taken out or replaced to make one word of the other.
std::size_t distance(std::string_view one, std::string_view other) {
    std::vector<std::size_t> row(other.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < one.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t j = 0; j < other.size(); ++j) {
            const std::size_t replaced = diagonal + (one[i] == other[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.back();
}

} // namespace

std::string nearestName(std::string_view word, const std::vector<std::string>& names) {
    std::string nearest;
    // Two slips in a word of six characters, one in a short one.
    std::size_t least = std::max(word.size() / 3, std::size_t{1}) + 1;
    for (const std::string& name : names) {
        const std::size_t slips = distance(word, name);
        if (slips < least) {
            least = slips;
            nearest = name;
        }
    }
    return nearest;
}

} // namespace quen::tools
