#pragma once

#include "Foundation/Export.h"
#include "Foundation/Value.h"

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace quen {

/// An item of the disk that is about to go.
struct UndoItem {
    enum class Kind { file, link, directory };
    /// Absolute.
    String path;
    Kind kind = Kind::file;
    /// Of the content, in bytes.
    std::uint64_t size = 0;

    friend bool operator==(const UndoItem&, const UndoItem&) = default;
};

/// An item and why something was not done to it.
struct UndoRefusal {
    String path;
    /// A sentence's end, such as `it is larger than what is kept at most (268435456 bytes)`.
    String reason;
    /// Where its content went instead; nil for nowhere.
    String beside;

    friend bool operator==(const UndoRefusal&, const UndoRefusal&) = default;
};

/// What was kept before one step that destroys.
struct UndoEntry {
    String id;
    /// The top of the working copy, by its real path.
    String workingCopy;
    /// What the step was: `revert`, `remove`.
    String step;
    std::chrono::system_clock::time_point time;
    std::vector<UndoItem> items;
    /// What else was lost and cannot be put back from here, in words for a person: changed
    /// properties, what was scheduled.
    std::vector<String> notes;
};

/// Keeps the content of files that a step is about to take from the disk, and puts it back.
///
/// Where: `$XDG_STATE_HOME/quen/undo`, else `~/.local/state/quen/undo`: a directory of mode 0700,
/// with one directory for each step that holds contents (0600) and a manifest. How much: by default
/// 256 MiB in 50 steps, of all working copies together; the oldest go first. Regular files, with
/// their permissions, symbolic links and directories are kept; the client's own `.svn` never. What
/// is scheduled (added, moved, changed properties) is not kept beyond the notes.
///
/// The order of a step:
///
///     const auto kept = store.keep(workingCopy, "revert", paths, notes);
///     if (!kept.error && kept.refused.empty()) { /* the step */ store.noteResult(kept.entry.id); }
///
/// Errors are in `FileErrorDomain`. Nothing throws but for want of memory.
///
/// Threads and processes: any number at once; they take turns.
class QUEN_EXPORT UndoStore {
public:
    struct Limits {
        std::uint64_t bytes = 256ULL * 1024 * 1024;
        std::size_t steps = 50;
    };

    /// nil where there is neither XDG_STATE_HOME nor a home.
    static String defaultDirectory();

    UndoStore() : UndoStore(defaultDirectory()) {}
    explicit UndoStore(String directory) : UndoStore(std::move(directory), Limits()) {}
    UndoStore(String directory, Limits limits)
        : directory_(std::move(directory)), limits_(limits) {}

    struct Kept {
        UndoEntry entry;
        /// What could not be kept, each with the reason: whoever goes on loses it.
        std::vector<UndoRefusal> refused;
        /// Nothing was kept at all.
        Error error;
    };
    /// Keeps what lies at each of `paths` (absolute, below the working copy): a directory with all
    /// that is in it. Paths at which there is nothing are passed over; where nothing is left and
    /// there are no notes, no entry is made and its `id` is nil.
    Kept keep(const String& workingCopy, const String& step, const std::vector<String>& paths,
              std::vector<String> notes = {});

    /// After the step: takes down what it left at the places of the entry. What differs from that
    /// when the time for undoing comes is newer work. Without this, everything counts as newer.
    Error noteResult(const String& id);

    /// Lets go of what was kept for a step that is not taken after all.
    void forget(const String& id);

    /// The steps that can be undone, the last one first.
    std::vector<UndoEntry> entries(const String& workingCopy) const;

    struct Restored {
        UndoEntry entry;
        std::vector<String> restored;
        /// Items whose place holds newer work: that stays, and what was kept is written beside it
        /// as `NAME.undone`. Also those that could not be written, without a `beside`.
        std::vector<UndoRefusal> refused;
        /// nil also where there was nothing to undo; the entry's `id` is nil then.
        Error error;
    };
    /// Undoes the last step of a working copy: puts every item back in its place, with its
    /// permissions. Newer work is never overwritten. Nothing is written outside the working copy,
    /// whatever links stand in the way by then. The entry is gone afterwards, unless something
    /// could be written nowhere.
    Restored restoreLast(const String& workingCopy);

    /// Likewise any step of a working copy, by its id. What a later step left in a place counts as
    /// nothing newer: that step has kept what was there. `ENOENT` where there is no such step.
    Restored restore(const String& workingCopy, const String& id);

private:
    const String directory_;
    const Limits limits_;
};

} // namespace quen
