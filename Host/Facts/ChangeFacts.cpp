#include "Host/Facts/ChangeFacts.h"

#include "Foundation/Lines.h"
#include "Host/Facts/ChangeConflicts.h"
#include "Host/Facts/ChangeLine.h"
#include "Host/Facts/ChangePlaces.h"
#include "Host/Facts/ItemLine.h"
#include "QuenFoundation/QuenSourceControlRequestFacts.h"
#include "QuenFoundation/QuenSourceControlRequestType.h"

#include <algorithm>
#include <utility>

namespace quen {

namespace {

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
    bool takeMerge(std::string_view line);
    bool takeCount(std::string_view line);

    const ChangeColumns columns;
    ChangeFacts facts;
    LineAssembler lines;
    ChangePlaces places;
    ChangeConflicts conflicts;
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
                                           conflicts.takeSettled(line, facts, places.external()) ||
                                           places.take(line, facts) || takeCount(line));
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
        ConflictFacts& conflict = conflicts.at(item->path, facts, places.external());
        conflict.text = isTextConflict ? ConflictState::left : conflict.text;
        conflict.properties = isPropertyConflict ? ConflictState::left : conflict.properties;
        conflict.tree = item->isTreeConflict ? ConflictState::left : conflict.tree;
    }
    item->external = places.external();
    facts.items.push_back(std::move(*item));
    return true;
}

bool ChangeFactsReader::State::takeSkipped(std::string_view line) {
    auto item = skippedIn(line);
    if (item) {
        item->external = places.external();
        facts.skipped.push_back(std::move(*item));
    }
    return item.has_value();
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
