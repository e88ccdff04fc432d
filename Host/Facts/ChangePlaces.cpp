#include "Host/Facts/ChangePlaces.h"

#include "Host/Facts/ChangeLine.h"
#include "Host/Places/Locations.h"

#include <array>
#include <cstdint>

namespace quen {

namespace {

constexpr std::array<std::string_view, 5> targetEnds = {
    "Updated to revision ", "At revision ", "Checked out revision ", "Exported revision ",
    "Committed revision "};
constexpr std::array<std::string_view, 4> externalEnds = {
    "Updated external to revision ", "External at revision ", "Checked out external at revision ",
    "Exported external at revision "};

template <std::size_t count> std::optional<std::int64_t>
revisionIn(std::string_view line, const std::array<std::string_view, count>& beginnings) {
    for (const std::string_view beginning : beginnings) {
        if (const auto revision = numberBehind(line, beginning)) {
            return revision;
        }
    }
    return std::nullopt;
}

} // namespace

bool ChangePlaces::takeTarget(std::string_view line, ChangeFacts& facts) {
    if (const auto path = quotedIn(line, "Updating ", ":")) {
        openExternals_.clear();
        facts.targets.push_back({String(*path), {}});
        return true;
    }
    const auto revision = revisionIn(line, targetEnds);
    if (!revision) {
        return false;
    }
    openExternals_.clear();
    facts.revision = revision;
    if (facts.targets.empty() || facts.targets.back().revision) {
        facts.targets.emplace_back();
    }
    facts.targets.back().revision = revision;
    return true;
}

std::optional<std::size_t> ChangePlaces::external() const {
    return openExternals_.empty() ? std::nullopt : std::optional(openExternals_.back());
}

void ChangePlaces::beginExternal(std::string_view path, ChangeFacts& facts) {
    // One that failed has no end of its own.
    while (!openExternals_.empty() &&
           !isBelow(path, facts.externals[openExternals_.back()].path.view())) {
        openExternals_.pop_back();
    }
    openExternals_.push_back(facts.externals.size());
    facts.externals.push_back({String(path), {}});
}

bool ChangePlaces::takeExternal(std::string_view line, ChangeFacts& facts) {
    if (const auto path = quotedIn(line, "Fetching external item into ", ":")) {
        beginExternal(*path, facts);
        return true;
    }
    if (const auto path = quotedIn(line, "Removed external ", "")) {
        facts.removedExternals.emplace_back(*path);
        return true;
    }
    const auto revision = revisionIn(line, externalEnds);
    if (!revision) {
        return false;
    }
    if (!openExternals_.empty()) {
        facts.externals[openExternals_.back()].revision = revision;
        openExternals_.pop_back();
    }
    return true;
}

} // namespace quen
