#include "Tools/Commands/Places/RevisionArguments.h"

#include "Foundation/Number.h"
#include "QuenFoundation/QuenSourceControlConstants.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace quen::tools {

namespace {

/// How far back `~N` may go.
constexpr std::int64_t mostSteps = 100'000;

bool isNumber(std::string_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(),
                                        [](unsigned char c) { return std::isdigit(c) != 0; });
}

/// The revision as the client reads it; empty for anything else.
std::string parseNamed(std::string_view text) {
    if (isNumber(text)) {
        return std::string(text);
    }
    if (text.starts_with('r') && isNumber(text.substr(1))) {
        return std::string(text.substr(1));
    }
    if (text.size() > 2 && text.front() == '{' && text.find('}') == text.size() - 1) {
        return std::string(text);
    }
    std::string word(text);
    std::transform(word.begin(), word.end(), word.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    constexpr std::array<std::string_view, 4> words{"HEAD", "BASE", "COMMITTED", "PREV"};
    return std::find(words.begin(), words.end(), word) == words.end() ? std::string() : word;
}

/// How many changes before: of `^`, `^^`, `~3` and what else they can be put together to.
std::optional<std::int64_t> parseSteps(std::string_view text) {
    std::int64_t steps = 0;
    while (!text.empty()) {
        const char kind = text.front();
        text.remove_prefix(1);
        const std::size_t size = std::min(text.find_first_of("^~"), text.size());
        std::int64_t count = 1;
        if (kind == '~' && size > 0) {
            const auto read = std::from_chars(text.data(), text.data() + size, count);
            if (read.ec != std::errc() || read.ptr != text.data() + size || count < 1) {
                return std::nullopt;
            }
            text.remove_prefix(size);
        } else if (size > 0) {
            return std::nullopt;
        }
        steps += count;
        if (steps > mostSteps) {
            return std::nullopt;
        }
    }
    return steps;
}

/// Likewise, with `~N` behind it where it is one before another; empty for anything else.
std::string parseRevision(std::string_view text) {
    const std::size_t end = std::min(text.find_first_of("^~"), text.size());
    const auto steps = parseSteps(text.substr(end));
    const std::string named = parseNamed(text.substr(0, end));
    if (!steps || named.empty()) {
        return {};
    }
    return *steps == 0 ? named : named + "~" + std::to_string(*steps);
}

/// A date holds colons too.
std::size_t separatorIn(std::string_view text) {
    return text.find(':', text.starts_with('{') ? std::min(text.find('}'), text.size()) : 0);
}

} // namespace

std::optional<RevisionRange> parseRevisionRange(std::string_view text) {
    const std::size_t separator = separatorIn(text);
    RevisionRange range{parseRevision(text.substr(0, separator)), ""};
    if (separator != std::string_view::npos) {
        range.end = parseRevision(text.substr(separator + 1));
    }
    const bool isWhole = range.isRange() || separator == std::string_view::npos;
    return range.isGiven() && isWhole ? std::optional(range) : std::nullopt;
}

String startingRevisionFor(const std::string& revision) {
    if (revision == "HEAD") {
        return QuenSourceControlHEADRevisionName;
    }
    if (revision == "BASE") {
        return QuenSourceControlBASERevisionName;
    }
    return revision.empty() ? String() : String(revision);
}

Parameter addRevisionOption(Subcommand& command, RevisionRange& revisions, bool takesRange,
                            const std::string& help) {
    const auto read = [&revisions, takesRange](const std::string& word) -> std::string {
        const auto range = parseRevisionRange(word);
        if (range && (takesRange || !range->isRange())) {
            revisions = *range;
            return {};
        }
        return "\"" + word + "\" is not a valid revision" + (takesRange ? " or range" : "") +
               ". A revision is a number, HEAD, BASE, PREV, COMMITTED or a date in braces, with ^ "
               "behind it the change before" +
               (takesRange ? "; a range is two of them with a colon between." : ".");
    };
    return command.option("-r,--revision", "REV", read, help);
}

namespace {

/// The longest range of revisions that is taken one by one.
constexpr std::int64_t longestRange = 1000;

std::optional<std::int64_t> parseNumber(std::string_view text) {
    text.remove_prefix(text.starts_with('r') ? 1 : 0);
    return isNumber(text) ? numberFrom(text) : std::nullopt;
}

/// `444`, `-444` or `440-444`, added to the numbers; false for anything else.
bool appendChange(std::string_view text, std::vector<std::int64_t>& numbers) {
    const bool isReverse = text.starts_with('-');
    text.remove_prefix(isReverse ? 1 : 0);
    const std::size_t dash = text.find('-');
    const auto first = parseNumber(text.substr(0, dash));
    const auto last = dash == std::string_view::npos ? first : parseNumber(text.substr(dash + 1));
    if (!first || !last || *first < 1 || *last < *first || *last - *first > longestRange) {
        return false;
    }
    for (std::int64_t number = *first; number <= *last; ++number) {
        numbers.push_back(isReverse ? -number : number);
    }
    return true;
}

} // namespace

std::optional<RevisionChanges> parseChanges(std::string_view text) {
    RevisionChanges changes;
    while (true) {
        const std::size_t comma = text.find(',');
        if (!appendChange(text.substr(0, comma), changes.numbers)) {
            return std::nullopt;
        }
        if (comma == std::string_view::npos) {
            return changes;
        }
        text.remove_prefix(comma + 1);
    }
}

Parameter addChangeOption(Subcommand& command, RevisionChanges& changes, const std::string& help) {
    const auto read = [&changes](const std::string& word) -> std::string {
        const auto parsed = parseChanges(word);
        if (!parsed) {
            return "\"" + word +
                   "\" is not a valid change. Use a revision number, -N for its reversal, or "
                   "several with commas between.";
        }
        changes.numbers.insert(changes.numbers.end(), parsed->numbers.begin(),
                               parsed->numbers.end());
        return {};
    };
    return command.option("-c,--change", "N[,M]", read, help).repeatable();
}

} // namespace quen::tools
