#include "Host/Facts/ChangeLine.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>

namespace quen {

namespace {

/// `r5`, or `r5 through r7`.
bool takeRange(std::string_view text, MergedRange& range) {
    constexpr std::string_view through = " through r";
    if (!text.starts_with('r')) {
        return false;
    }
    const std::size_t end = text.find(through);
    range.first = numberBehind(text.substr(0, end), "r");
    range.last =
        end == std::string_view::npos ? range.first : numberBehind(text.substr(end), through);
    return range.first.has_value() && range.last.has_value();
}

} // namespace

std::optional<std::int64_t> numberBehind(std::string_view line, std::string_view beginning) {
    if (!line.starts_with(beginning)) {
        return std::nullopt;
    }
    line.remove_prefix(beginning.size());
    std::int64_t number = 0;
    const auto scanned = std::from_chars(line.data(), line.data() + line.size(), number);
    const std::string_view rest(scanned.ptr,
                                static_cast<std::size_t>(line.data() + line.size() - scanned.ptr));
    const bool isEnd = rest.empty() || rest.front() == '.' || rest.front() == ' ';
    return scanned.ec == std::errc() && number >= 0 && isEnd ? std::optional(number) : std::nullopt;
}

std::optional<std::string_view> quotedIn(std::string_view line, std::string_view beginning,
                                         std::string_view ending) {
    const std::size_t shortest = beginning.size() + ending.size() + 2;
    if (line.size() < shortest || !line.starts_with(beginning) || !line.ends_with(ending)) {
        return std::nullopt;
    }
    line = line.substr(beginning.size(), line.size() - beginning.size() - ending.size());
    if (!line.starts_with('\'') || !line.ends_with('\'')) {
        return std::nullopt;
    }
    return line.substr(1, line.size() - 2);
}

std::optional<SkippedItem> skippedIn(std::string_view line) {
    for (const std::string_view beginning :
         {"Skipped missing target: ", "Skipped target: ", "Skipped ", "Failed to revert "}) {
        if (!line.starts_with(beginning)) {
            continue;
        }
        if (const auto path = quotedIn(line, beginning, "")) {
            return SkippedItem{String(*path), {}, {}};
        }
        // A name may hold what separates it from the reason; a reason holds no quote.
        constexpr std::string_view separator = "' -- ";
        const std::size_t end = line.rfind(separator);
        if (end == std::string_view::npos || end <= beginning.size() ||
            line[beginning.size()] != '\'') {
            return std::nullopt;
        }
        const std::size_t start = beginning.size() + 1;
        return SkippedItem{String(line.substr(start, end - start)),
                           String(line.substr(end + separator.size())),
                           {}};
    }
    return std::nullopt;
}

std::optional<ConflictFacts> settledIn(std::string_view line) {
    constexpr std::string_view ending = " marked as resolved.";
    ConflictFacts facts;
    for (const std::string_view beginning : {"Merge conflicts in ", "Merge conflict in "}) {
        if (const auto path = quotedIn(line, beginning, ending)) {
            facts.path = String(*path);
            facts.text = ConflictState::settled;
            return facts;
        }
    }
    if (const auto path = quotedIn(line, "Tree conflict at ", ending)) {
        facts.path = String(*path);
        facts.tree = ConflictState::settled;
        return facts;
    }
    if (const auto path = quotedIn(line, "Resolved conflicted state of ", "")) {
        facts.path = String(*path);
        facts.unspecified = ConflictState::settled;
        return facts;
    }
    if (const auto both = quotedIn(line, "Conflict in property ", ending)) {
        // Property names hold no quotes.
        constexpr std::string_view separator = "' at '";
        const std::size_t end = both->find(separator);
        if (end != std::string_view::npos) {
            facts.path = String(both->substr(end + separator.size()));
            facts.properties = ConflictState::settled;
            facts.settledProperties = {String(both->substr(0, end))};
            return facts;
        }
    }
    return std::nullopt;
}

std::optional<MergedRange> mergedRangeIn(std::string_view line) {
    MergedRange range;
    range.isReverse = line.starts_with("--- Reverse-merging ");
    const std::string_view beginning = range.isReverse ? "--- Reverse-merging " : "--- Merging ";
    constexpr std::string_view into = " into '";
    constexpr std::string_view ending = "':";
    const std::size_t end = line.find(into);
    const std::size_t start = end + into.size();
    if (!line.starts_with(beginning) || end == std::string_view::npos || !line.ends_with(ending) ||
        line.size() < start + ending.size()) {
        return std::nullopt;
    }
    range.into = String(line.substr(start, line.size() - ending.size() - start));
    std::string_view revisions = line.substr(beginning.size(), end - beginning.size());
    constexpr std::string_view foreign = "(from foreign repository) ";
    revisions.remove_prefix(revisions.starts_with(foreign) ? foreign.size() : 0);
    if (!takeRange(revisions, range) && !revisions.starts_with("differences between ")) {
        return std::nullopt;
    }
    return range;
}

std::optional<ConflictCount> countIn(std::string_view line, std::string_view kind) {
    const std::string beginning = "  " + std::string(kind) + " conflicts: ";
    const auto remaining = numberBehind(line, beginning);
    if (!remaining) {
        return std::nullopt;
    }
    ConflictCount count{*remaining, 0};
    constexpr std::string_view resolved = " remaining (and ";
    if (const auto at = line.find(resolved); at != std::string_view::npos) {
        count.resolved = numberBehind(line.substr(at), resolved).value_or(0);
    }
    return count;
}

bool holdsNoFact(std::string_view line) noexcept {
    constexpr std::array<std::string_view, 16> beginnings = {"Summary of ",
                                                             "  Updated '",
                                                             "  Skipped paths: ",
                                                             "    S   ",
                                                             "Searching tree conflict ",
                                                             "Checking r",
                                                             "\rChecking r",
                                                             "Breaking move with source path '",
                                                             "External update ",
                                                             "External checkout ",
                                                             "External export ",
                                                             "Transmitting file data ",
                                                             "Committing transaction...",
                                                             "property '",
                                                             "--- ",
                                                             "Left local modifications as '"};
    return line.find_first_not_of(' ') == std::string_view::npos ||
           std::any_of(beginnings.begin(), beginnings.end(),
                       [=](std::string_view each) { return line.starts_with(each); });
}

} // namespace quen
