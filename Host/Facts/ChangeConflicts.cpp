#include "Host/Facts/ChangeConflicts.h"

#include "Host/Facts/ChangeLine.h"

namespace quen {

namespace {

void settle(ConflictState& state) noexcept {
    state = state == ConflictState::none ? state : ConflictState::settled;
}

void take(ConflictState& state, ConflictState told) noexcept {
    state = told == ConflictState::none ? state : told;
}

void addNamed(ConflictFacts& conflict, const ConflictFacts& settled) {
    take(conflict.text, settled.text);
    take(conflict.properties, settled.properties);
    take(conflict.tree, settled.tree);
    conflict.settledProperties.insert(conflict.settledProperties.end(),
                                      settled.settledProperties.begin(),
                                      settled.settledProperties.end());
}

/// Where text or properties are in conflict, the sentence is about those: a tree has its own.
void settleUnspecified(ConflictFacts& conflict) noexcept {
    if (conflict.text != ConflictState::none || conflict.properties != ConflictState::none) {
        settle(conflict.text);
        settle(conflict.properties);
    } else if (conflict.tree != ConflictState::none) {
        settle(conflict.tree);
    } else {
        conflict.unspecified = ConflictState::settled;
    }
}

} // namespace

ConflictFacts& ChangeConflicts::at(const String& path, ChangeFacts& facts,
                                   std::optional<std::size_t> external) {
    const auto [known, isNew] = numbers_.try_emplace(path.str(), facts.conflicts.size());
    if (isNew) {
        ConflictFacts& conflict = facts.conflicts.emplace_back();
        conflict.path = path;
        conflict.external = external;
    }
    return facts.conflicts[known->second];
}

bool ChangeConflicts::takeSettled(std::string_view line, ChangeFacts& facts,
                                  std::optional<std::size_t> external) {
    const auto settled = settledIn(line);
    if (settled) {
        ConflictFacts& conflict = at(settled->path, facts, external);
        addNamed(conflict, *settled);
        if (settled->unspecified != ConflictState::none) {
            settleUnspecified(conflict);
        }
    }
    return settled.has_value();
}

} // namespace quen
