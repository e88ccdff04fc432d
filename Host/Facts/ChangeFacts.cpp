#include "Host/Facts/ChangeFacts.h"

#include "Foundation/Lines.h"
#include "Host/Facts/ChangeLine.h"
#include "QuenFoundation/QuenSourceControlRequestFacts.h"
#include "QuenFoundation/QuenSourceControlRequestType.h"

#include <algorithm>
#include <array>
#include <string>
#include <unordered_map>
#include <utility>

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

bool isBelow(std::string_view path, std::string_view directory) noexcept {
    return path.size() > directory.size() && path.starts_with(directory) &&
           path[directory.size()] == '/';
}

ConflictState inOneWord(const ConflictFacts& conflict, ConflictState state) noexcept {
    const bool holds = conflict.text == state || conflict.properties == state ||
                       conflict.tree == state || conflict.unspecified == state;
    return holds ? state : ConflictState::none;
}

} // namespace

bool ChangeFacts::holdsSettled() const noexcept {
    return std::any_of(conflicts.begin(), conflicts.end(), [](const ConflictFacts& each) {
        return inOneWord(each, ConflictState::settled) == ConflictState::settled;
    });
}

bool ChangeFacts::holdsLeft() const noexcept {
    return !skipped.empty() ||
           std::any_of(conflicts.begin(), conflicts.end(), [](const ConflictFacts& each) {
               return inOneWord(each, ConflictState::left) == ConflictState::left;
           });
}

ChangeColumns changeColumnsOf(std::int32_t requestType) noexcept {
    const RequestFacts* const facts = requestFactsOf(requestType);
    return facts != nullptr && facts->transfersItems ? ChangeColumns::transfer
                                                     : ChangeColumns::schedule;
}

struct __attribute__((visibility("hidden"))) ChangeFactsReader::State {
    explicit State(ChangeColumns kind) : columns(kind) {}

    void take(std::string_view piece);
    void takeLine(std::string_view line);
    bool takeItem(std::string_view line);
    bool takeSkipped(std::string_view line);
    bool takeSettled(std::string_view line);
    bool takePlace(std::string_view line);
    bool takeExternal(std::string_view line);
    bool takeMerge(std::string_view line);
    bool takeCount(std::string_view line);

    ConflictFacts& conflictOf(const String& path);
    void beginExternal(std::string_view path);
    std::optional<std::size_t> external() const;

    const ChangeColumns columns;
    ChangeFacts facts;
    LineAssembler lines;
    std::unordered_map<std::string, std::size_t> conflictByPath;
    /// The externals that are being fetched, one inside another.
    std::vector<std::size_t> openExternals;
    bool isRecordingMerge = false;
    bool isTextOfHook = false;
};

// Pieces and lines

void ChangeFactsReader::State::take(std::string_view piece) {
    lines.take(piece, [this](std::string_view line) { takeLine(line); });
}

void ChangeFactsReader::State::takeLine(std::string_view line) {
    isTextOfHook = isTextOfHook || line.starts_with("Warning: ") || line.starts_with("warning: ");
    const bool isKnown = !isTextOfHook && (takeMerge(line) || takeItem(line) || takeSkipped(line) ||
                                           takeSettled(line) || takePlace(line) ||
                                           takeExternal(line) || takeCount(line));
    if (!isKnown && (isTextOfHook || !holdsNoFact(line)) &&
        facts.unknownLines.size() < ChangeFacts::maximumOfUnknownLines) {
        facts.unknownLines.emplace_back(line);
    }
}

bool ChangeFactsReader::State::takeMerge(std::string_view line) {
    if (auto range = mergedRangeIn(line)) {
        facts.merges.push_back(std::move(*range));
        isRecordingMerge = false;
        return true;
    }
    isRecordingMerge = isRecordingMerge || line.starts_with("--- Recording mergeinfo ") ||
                       line.starts_with("--- Eliding mergeinfo ");
    return false;
}

// Items

bool ChangeFactsReader::State::takeItem(std::string_view line) {
    auto item = itemIn(line, columns);
    if (!item) {
        return false;
    }
    if (isRecordingMerge) {
        return true; // the client's own note of what was merged, on the target
    }
    const bool isTextConflict = item->text == ItemAction::conflicted;
    const bool isPropertyConflict = item->properties == ItemAction::conflicted;
    if (isTextConflict || isPropertyConflict || item->isTreeConflict) {
        ConflictFacts& conflict = conflictOf(item->path);
        conflict.text = isTextConflict ? ConflictState::left : conflict.text;
        conflict.properties = isPropertyConflict ? ConflictState::left : conflict.properties;
        conflict.tree = item->isTreeConflict ? ConflictState::left : conflict.tree;
    }
    item->external = external();
    facts.items.push_back(std::move(*item));
    return true;
}

bool ChangeFactsReader::State::takeSkipped(std::string_view line) {
    auto item = skippedIn(line);
    if (item) {
        item->external = external();
        facts.skipped.push_back(std::move(*item));
    }
    return item.has_value();
}

// Conflicts

ConflictFacts& ChangeFactsReader::State::conflictOf(const String& path) {
    const auto [known, isNew] = conflictByPath.try_emplace(path.str(), facts.conflicts.size());
    if (isNew) {
        ConflictFacts& conflict = facts.conflicts.emplace_back();
        conflict.path = path;
        conflict.external = external();
    }
    return facts.conflicts[known->second];
}

bool ChangeFactsReader::State::takeSettled(std::string_view line) {
    const auto settled = settledIn(line);
    if (!settled) {
        return false;
    }
    ConflictFacts& conflict = conflictOf(settled->path);
    const auto settle = [](ConflictState& state) {
        state = state == ConflictState::none ? state : ConflictState::settled;
    };
    const auto take = [](ConflictState& state, ConflictState told) {
        state = told == ConflictState::none ? state : told;
    };
    take(conflict.text, settled->text);
    take(conflict.properties, settled->properties);
    take(conflict.tree, settled->tree);
    conflict.settledProperties.insert(conflict.settledProperties.end(),
                                      settled->settledProperties.begin(),
                                      settled->settledProperties.end());
    if (settled->unspecified == ConflictState::none) {
        return true;
    }
    // Where text or properties are in conflict, the sentence is about those: a tree has its own.
    if (conflict.text != ConflictState::none || conflict.properties != ConflictState::none) {
        settle(conflict.text);
        settle(conflict.properties);
    } else if (conflict.tree != ConflictState::none) {
        settle(conflict.tree);
    } else {
        conflict.unspecified = ConflictState::settled;
    }
    return true;
}

bool ChangeFactsReader::State::takeCount(std::string_view line) {
    for (const auto& [kind, count] :
         {std::pair("Text", &facts.textConflicts), std::pair("Property", &facts.propertyConflicts),
          std::pair("Tree", &facts.treeConflicts)}) {
        if (const auto told = countIn(line, kind)) {
            *count = *told;
            return true;
        }
    }
    return false;
}

// Places

bool ChangeFactsReader::State::takePlace(std::string_view line) {
    if (const auto path = quotedIn(line, "Updating ", ":")) {
        openExternals.clear();
        facts.targets.push_back({String(*path), {}});
        return true;
    }
    const auto revision = revisionIn(line, targetEnds);
    if (!revision) {
        return false;
    }
    openExternals.clear();
    facts.revision = revision;
    if (facts.targets.empty() || facts.targets.back().revision) {
        facts.targets.emplace_back();
    }
    facts.targets.back().revision = revision;
    return true;
}

std::optional<std::size_t> ChangeFactsReader::State::external() const {
    return openExternals.empty() ? std::nullopt : std::optional(openExternals.back());
}

void ChangeFactsReader::State::beginExternal(std::string_view path) {
    // One that failed has no end of its own.
    while (!openExternals.empty() &&
           !isBelow(path, facts.externals[openExternals.back()].path.view())) {
        openExternals.pop_back();
    }
    openExternals.push_back(facts.externals.size());
    facts.externals.push_back({String(path), {}});
}

bool ChangeFactsReader::State::takeExternal(std::string_view line) {
    if (const auto path = quotedIn(line, "Fetching external item into ", ":")) {
        beginExternal(*path);
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
    if (!openExternals.empty()) {
        facts.externals[openExternals.back()].revision = revision;
        openExternals.pop_back();
    }
    return true;
}

// ChangeFactsReader

ChangeFactsReader::ChangeFactsReader(ChangeColumns columns)
    : state_(std::make_unique<State>(columns)) {}
ChangeFactsReader::ChangeFactsReader(ChangeFactsReader&&) noexcept = default;
ChangeFactsReader& ChangeFactsReader::operator=(ChangeFactsReader&&) noexcept = default;
ChangeFactsReader::~ChangeFactsReader() = default;

void ChangeFactsReader::take(std::string_view piece) {
    state_->take(piece);
}

const ChangeFacts& ChangeFactsReader::facts() const noexcept {
    return state_->facts;
}

ChangeFacts ChangeFactsReader::takeFacts() {
    return std::exchange(state_->facts, {});
}

} // namespace quen
