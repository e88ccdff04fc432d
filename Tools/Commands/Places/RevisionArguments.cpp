#include "Tools/Commands/Places/RevisionArguments.h"

#include "QuenFoundation/QuenSourceControlConstants.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace quen::tools {

namespace {

bool isNumber(std::string_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(),
                                        [](unsigned char c) { return std::isdigit(c) != 0; });
}

/// The revision as the client reads it; empty for anything else.
std::string parseRevision(std::string_view text) {
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
               ". A revision is a number, HEAD, BASE, PREV, COMMITTED or a date in braces" +
               (takesRange ? ", a range is two of them with a colon between." : ".");
    };
    return command.option("-r,--revision", "REV", read, help);
}

} // namespace quen::tools
