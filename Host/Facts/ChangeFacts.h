#pragma once

#include "Foundation/Export.h"
#include "Foundation/String.h"
#include "QuenFoundation/QuenSourceControlRequest.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace quen {

/// What the client did to an item's text or to its properties, by its own letters.
enum class ItemAction {
    none,
    added,      // A
    deleted,    // D
    updated,    // U: nothing was changed here, the newer one is in place now
    merged,     // G: both sides had changed; the client put them together without a question
    existed,    // E: what was to be added lay there already
    replaced,   // R
    conflicted, // C: see `ConflictFacts` for what became of it
    restored,   // it was missing from the disk and is there again
    reverted,   // back to what it rests on
    sent,       // committed as changed
};

/// One item that the client worked on.
struct ChangedItem {
    /// As the client printed it: absolute where the target was and lies outside the client's
    /// working directory, otherwise relative to that.
    String path;
    ItemAction text = ItemAction::none;
    ItemAction properties = ItemAction::none;
    bool isTreeConflict = false;
    /// It lies below a tree conflict: what it rests on has changed so, and nothing on the disk.
    bool isBelowTreeConflict = false;
    /// A lock that this working copy held on it was broken or stolen.
    bool isLockBroken = false;
    /// The external that it belongs to, an index into `externals`.
    std::optional<std::size_t> external;

    friend bool operator==(const ChangedItem&, const ChangedItem&) = default;
};

/// What became of a conflict.
enum class ConflictState {
    none,
    /// It waits for a person.
    left,
    /// The client has decided it. The provider's update and merge tell it to decide for what was
    /// here (`--accept mine-full`): nothing of what came in is in the file then, not even the lines
    /// that nobody here had touched.
    settled,
};

/// An item in which what came in met what was here.
struct ConflictFacts {
    String path;
    ConflictState text = ConflictState::none;
    ConflictState properties = ConflictState::none;
    ConflictState tree = ConflictState::none;
    /// Of a kind that the client did not tell: it says no more where all that it does is resolve.
    ConflictState unspecified = ConflictState::none;
    /// The properties that the client named when it settled them; it does not always.
    std::vector<String> settledProperties;
    std::optional<std::size_t> external;

    friend bool operator==(const ConflictFacts&, const ConflictFacts&) = default;
};

/// An item that the client passed over.
struct SkippedItem {
    String path;
    /// In the client's words, such as `Node remains in conflict`; nil where it gives none.
    String reason;
    std::optional<std::size_t> external;

    friend bool operator==(const SkippedItem&, const SkippedItem&) = default;
};

/// A place that the run was about, or an external below it, with what it rests on afterwards. A
/// revision is absent where the client did not get that far.
struct ReachedPlace {
    String path;
    std::optional<std::int64_t> revision;

    friend bool operator==(const ReachedPlace&, const ReachedPlace&) = default;
};

/// One range of revisions that a merge brought.
struct MergedRange {
    /// Of a reverse merge, the larger one comes first. Absent for a merge between two URLs.
    std::optional<std::int64_t> first;
    std::optional<std::int64_t> last;
    bool isReverse = false;
    /// The merge's target.
    String into;

    friend bool operator==(const MergedRange&, const MergedRange&) = default;
};

/// The client's own count of one kind of conflict.
struct ConflictCount {
    std::int64_t remaining = 0;
    std::int64_t resolved = 0;

    friend bool operator==(const ConflictCount&, const ConflictCount&) = default;
};

/// What the client tells on standard output while it changes a working copy.
struct QUEN_EXPORT ChangeFacts {
    /// In the client's order. An item may come up several times: a replaced one as deleted and as
    /// added, one that a merge of several ranges touched once for each.
    std::vector<ChangedItem> items;
    /// Each item once, whatever the number of its conflicts.
    std::vector<ConflictFacts> conflicts;
    std::vector<SkippedItem> skipped;
    /// Of an update: what was updated, in order. Other runs have one without a path.
    std::vector<ReachedPlace> targets;
    std::vector<ReachedPlace> externals;
    /// Directories that are externals no longer and were taken away.
    std::vector<String> removedExternals;
    std::vector<MergedRange> merges;
    /// The revision that the run as a whole reached, or made: the last one told outside externals.
    std::optional<std::int64_t> revision;
    ConflictCount textConflicts;
    ConflictCount propertyConflicts;
    ConflictCount treeConflicts;
    /// Lines that the reader does not know, at most `maximumOfUnknownLines`: a newer client's, or a
    /// hook's.
    std::vector<String> unknownLines;
    static constexpr std::size_t maximumOfUnknownLines = 100;

    /// Whether anything was settled by the client, and whether anything waits for a person: a
    /// conflict, or an item that was skipped.
    bool holdsSettled() const noexcept;
    bool holdsLeft() const noexcept;

    friend bool operator==(const ChangeFacts&, const ChangeFacts&) = default;
};

/// The columns that a kind of run prints its items in.
enum class ChangeColumns {
    /// Update, switch, merge, checkout, export: text, properties, lock, tree.
    transfer,
    /// Add, remove, move, copy, mkdir, import and what else schedules: one letter, and the name far
    /// to the right.
    schedule,
};

/// For one of the provider's request types.
QUEN_EXPORT ChangeColumns changeColumnsOf(std::int32_t requestType) noexcept;

/// Reads the plain text that the client writes while it changes something, whole or in pieces as
/// they arrive, with the same results: hand it to the run's output watcher. Wording and columns are
/// those of clients 1.7 to 1.14 with English messages.
///
/// A line counts when its end has come: of output that breaks off, the last line counts for
/// nothing, since half a name is another name. Memory grows with the facts and with the longest
/// line.
///
/// Threads: one thread at a time.
class QUEN_EXPORT ChangeFactsReader {
public:
    explicit ChangeFactsReader(ChangeColumns columns = ChangeColumns::transfer);
    ChangeFactsReader(ChangeFactsReader&&) noexcept;
    ChangeFactsReader& operator=(ChangeFactsReader&&) noexcept;
    ~ChangeFactsReader();

    void take(std::string_view piece);

    /// What has been read so far; complete whenever a line has ended.
    const ChangeFacts& facts() const noexcept;
    /// The same, to keep; the end of the reading.
    ChangeFacts takeFacts();

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace quen
