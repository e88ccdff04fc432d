#pragma once

#include "Host/Keeping/TheirsKeeper.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace quen {

/// One conflict of an update, merge, switch or checkout, as it is to be told: what it is about, who
/// decided it, and where both versions are.
struct ConflictOutcome {
    enum class Kind {
        text,
        property,
        tree,
        /// The client settled it and did not say what it was about.
        unspecified,
    };
    /// Absolute.
    String path;
    Kind kind = Kind::text;
    /// `settled` or `left`.
    ConflictState state = ConflictState::left;
    /// Of properties: those that the client named when it settled them; it does not always.
    std::vector<String> properties;
    /// The file that holds what came in, absolute: the one that was kept beside, or the client's
    /// own for a conflict that is left. nil where there is none.
    String theirs;
    /// Of a text that is left in conflict, the client's file that holds what was here; nil where
    /// there is none.
    String mine;
    /// Of a tree, in the client's words: `local file edit, incoming file delete or move upon
    /// update`; nil where they are not known.
    String description;
    /// The revision of what came in.
    std::optional<std::int64_t> revision;
    /// Why what came in could not be kept beside.
    Error error;
};

/// The conflicts of a run, in the order of the facts: one for each of an item's text, properties
/// and tree. `kept` is the answer of `keepTheirsOfUpdate` or `keepTheirsOfMerge`, empty where
/// nothing was kept; relative paths of the facts are relative to `directory`.
std::vector<ConflictOutcome> conflictOutcomes(const ChangeFacts& facts,
                                              const std::vector<KeptTheirs>& kept,
                                              const String& directory);

/// Fills in what `svn info` knows of those that are left: the reason of a tree conflict, the files
/// beside a text. One run of the client where any is left; where it fails, they stay as they are.
void explainLeft(std::vector<ConflictOutcome>& outcomes, const QueryRunner& run = runHere);

/// Whether the error of a run says only that conflicts are left. Everything else has been done
/// then: the client ends with a failure where it was told to decide and could not.
bool saysOnlyConflictsLeft(const Error& error);

} // namespace quen
