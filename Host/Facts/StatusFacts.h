#pragma once

#include "Foundation/Export.h"
#include "Foundation/Value.h"
#include "Host/Facts/ReportFacts.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace quen {

/// All that the client says of one item in `svn status --xml`. A text is nil and a number absent
/// where the report does not hold it.
struct StatusEntry {
    /// As the client printed it: absolute where the request's path was, otherwise relative to the
    /// client's working directory. Byte for byte, control characters included.
    String path;
    /// The client's words: `normal`, `modified`, `added`, `deleted`, `replaced`, `missing`,
    /// `incomplete`, `unversioned`, `ignored`, `conflicted`, `obstructed`, `external`, `none`.
    String item;
    /// `none`, `normal`, `modified` or `conflicted`.
    String properties;
    /// What the repository has newer, after a remote status; `none` where it has nothing newer.
    String incomingItem;
    String incomingProperties;
    /// The client's own changelist that the item belongs to.
    String changelist;
    /// The revision on which the working copy's text rests. Added items have none, copied ones
    /// neither.
    std::optional<std::int64_t> revision;
    /// Where the item last changed.
    CommitFacts commit;
    /// The two ends of a move that is not committed, in the form of `path`.
    String movedFrom;
    String movedTo;
    /// The lock that this working copy holds, and the one that the repository knows (remote
    /// status); null where there is none.
    std::shared_ptr<const LockFacts> lock;
    std::shared_ptr<const LockFacts> repositoryLock;
    /// The item, or what it lies in, was copied or moved here.
    bool isCopied = false;
    bool isSwitched = false;
    bool isFileExternal = false;
    /// The client's own lock on the working copy's directory: another client is at work there, or
    /// was killed, and `WorkingCopyCleanup` is due. Not a lock on a file.
    bool isWorkingCopyLocked = false;
    /// The report says no more of a tree conflict; `InfoFacts` has its reason.
    bool isTreeConflict = false;
};

/// Something that only this working copy holds, or that must be decided here: a changed, added,
/// deleted or missing item, changed properties, a conflict of any kind. Unversioned and ignored
/// items are none.
QUEN_EXPORT bool isLocallyChanged(const StatusEntry& entry) noexcept;
/// A conflict in text, properties or tree.
QUEN_EXPORT bool isConflicted(const StatusEntry& entry) noexcept;
/// The repository has something newer (remote status).
QUEN_EXPORT bool isIncoming(const StatusEntry& entry) noexcept;
/// Nothing at all to say of it but where it rests: reports hold such entries for targets and for
/// whatever else they mention.
QUEN_EXPORT bool isUnchanged(const StatusEntry& entry) noexcept;

/// A report of `svn status --xml`, with or without `-u`.
struct StatusFacts {
    /// In the report's order, which puts the members of changelists last. An item that several
    /// targets hold is told several times.
    std::vector<StatusEntry> entries;
    /// The revision that a remote status compares with.
    std::optional<std::int64_t> against;
    /// What made the report unreadable for a strict reader; empty for a well-formed report.
    std::vector<UnreadableText> unreadable;
};

/// Reads the bytes of a status, whole or in pieces as they arrive, with the same results.
///
/// It is for the bytes of a run that an operation of the provider's made anyway: hand it to the
/// run's output watcher. It reads what a strict reader must refuse: names with control characters
/// (see `unreadable`), and the beginning of a report that breaks off. It never makes up facts: an
/// entry counts when all of it was there.
///
/// Threads: one thread at a time.
class QUEN_EXPORT StatusFactsReader {
public:
    StatusFactsReader();
    StatusFactsReader(StatusFactsReader&&) noexcept;
    StatusFactsReader& operator=(StatusFactsReader&&) noexcept;
    ~StatusFactsReader();

    void take(std::string_view piece);
    /// Ends the report; call once. nil when all of it was read; otherwise why not, in the domain of
    /// the XML reader. What was read until then counts all the same.
    Error finish();

    /// What has been read so far.
    const StatusFacts& facts() const noexcept;
    /// The same, to keep; while it is read, what has come since the last call.
    StatusFacts takeFacts();

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace quen
