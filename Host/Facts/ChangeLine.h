#pragma once

#include "Host/Facts/ChangeFacts.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace quen {

// One line of what the client prints while it changes something, taken apart. Private to
// `ChangeFactsReader`. Every function answers nullopt for a line of another kind.

/// `Skipped 'a.c' -- Node remains in conflict`.
std::optional<SkippedItem> skippedIn(std::string_view line);

/// A sentence that tells of conflicts that are settled. In the answer, what the sentence is about
/// is settled; `unspecified` where it does not say.
std::optional<ConflictFacts> settledIn(std::string_view line);

/// `--- Merging r3 through r5 into '.':`
std::optional<MergedRange> mergedRangeIn(std::string_view line);

/// The number behind `beginning`, where the line is that and a number, with nothing but a full stop
/// or a remark behind it.
std::optional<std::int64_t> numberBehind(std::string_view line, std::string_view beginning);

/// What stands between the quotes in `beginning'..'ending`.
std::optional<std::string_view> quotedIn(std::string_view line, std::string_view beginning,
                                         std::string_view ending);

/// `  Text conflicts: 1`, or `  Text conflicts: 0 remaining (and 1 already resolved)`, where
/// `kind` is `Text`.
std::optional<ConflictCount> countIn(std::string_view line, std::string_view kind);

/// Lines that hold no fact.
bool holdsNoFact(std::string_view line) noexcept;

} // namespace quen
