#pragma once

#include "Foundation/Export.h"
#include "Host/ClientCommand.h"
#include "Host/Facts/ChangeFacts.h"
#include "Host/Facts/ReportFacts.h"
#include "Host/Facts/StatusFacts.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace quen {

// What a step would send, take away or decide, told before it is taken. A plan is made from runs of
// the client that change nothing. It is as true as the moment it was made in.
//
// Paths are absolute, in both directions; as files' names, never closed with an `@`. An empty list
// of paths gives an empty plan: no step may be taken with one, since some of the client's commands
// would take the working directory instead. `error` is set where the client failed: the lists then
// hold what it said until then, and the step should not be taken. `unreadable` names what made a
// report unreadable for a strict reader; the plan holds it all the same.

/// Something that would be gone for good: it is in no revision.
struct LostItem {
    String path;
    /// What the working copy says of it.
    StatusEntry status;
    /// The content of the file, or of what was never under version control, goes.
    bool losesContent = false;
    bool losesProperties = false;
};

/// The paths whose content goes: what an `UndoStore` is to keep.
QUEN_EXPORT std::vector<String> lostContent(const std::vector<LostItem>& lost);
/// What goes beside content, in words for a person and for the notes of an `UndoStore`: changed
/// properties with their values, as the client's own differences. At most 1 MiB of them.
QUEN_EXPORT std::vector<String> lostPropertyNotes(const std::vector<LostItem>& lost,
                                                  const QueryRunner& run = runHere);

struct RevertPlan {
    /// Everything that the revert would touch, whether anything is lost by it or not.
    std::vector<StatusEntry> touched;
    /// Edited files, edits inside copied and moved files, replaced files, changed properties.
    /// Added files are not among them: they stay on the disk, unversioned; nor are missing and
    /// deleted ones, which come back.
    std::vector<LostItem> lost;
    std::vector<UnreadableText> unreadable;
    Error error;
};
/// For the provider's revert, which goes all the way down.
QUEN_EXPORT RevertPlan planRevert(const std::vector<String>& paths,
                                  const QueryRunner& run = runHere);

struct RemovePlan {
    /// Edited, added, copied and edited, unversioned and ignored items, at and below the paths, and
    /// what is changed in externals there: all of it goes from the disk. A directory that is
    /// unversioned stands for all that is in it.
    std::vector<LostItem> lost;
    std::vector<UnreadableText> unreadable;
    Error error;
};
/// For the provider's removal of paths, which is forced.
QUEN_EXPORT RemovePlan planRemove(const std::vector<String>& paths,
                                  const QueryRunner& run = runHere);

/// An item of the repository that is to be removed there.
struct RemovedURL {
    /// As it was given.
    String url;
    /// `file` or `dir`.
    String kind;
    /// Where it last changed.
    CommitFacts commit;
    /// How many items lie in a directory, at any depth.
    std::size_t itemsBelow = 0;
};

struct RemoteRemovePlan {
    std::vector<RemovedURL> removed;
    std::vector<UnreadableText> unreadable;
    Error error;
};
/// For the removal of URLs, which is a commit at once: nothing is lost, since the revisions before
/// hold it, and all that lies below is gone for everybody else. Asks the repository.
QUEN_EXPORT RemoteRemovePlan planRemoteRemove(const std::vector<String>& urls,
                                              const QueryRunner& run = runHere);

/// Paths of one working copy: a commit of its own.
struct CommitGroup {
    String workingCopy;
    std::vector<String> paths;
};

struct CommitPlan {
    /// Exactly what `svn commit PATHS` would send: of a deleted directory only the directory.
    std::vector<StatusEntry> sent;
    /// Of these, what was not itself among the paths: below a directory that was.
    std::vector<String> alsoTaken;
    /// Directories that are added and lead to something sent: the commit fails without them.
    std::vector<String> needsParents;
    /// Other ends of moves: the commit fails without them.
    std::vector<String> needsOtherEnds;
    /// What is in the way of a commit.
    std::vector<StatusEntry> conflicts;
    /// What is not sent, and may have been meant.
    std::vector<StatusEntry> unversioned;
    std::vector<StatusEntry> missing;
    /// By working copy, in the order of the paths; externals are working copies of their own and
    /// only sent where they are named.
    std::vector<CommitGroup> groups;
    std::vector<UnreadableText> unreadable;
    Error error;
};
QUEN_EXPORT CommitPlan planCommit(const std::vector<String>& paths,
                                  const QueryRunner& run = runHere);

struct UpdatePlan {
    /// The revision that an update would reach.
    std::optional<std::int64_t> revision;
    std::vector<StatusEntry> incoming;
    std::vector<StatusEntry> localChanges;
    /// Changed on both sides, in text or in properties or in the tree. Where the same lines are
    /// concerned, the provider's update decides for what is here.
    std::vector<StatusEntry> changedOnBothSides;
    /// Unversioned items in the place of incoming ones: the update leaves a tree conflict.
    std::vector<StatusEntry> inTheWay;
    std::vector<UnreadableText> unreadable;
    Error error;
};
/// Asks the repository. `revision` is that of the client's `-r`, empty for the youngest.
QUEN_EXPORT UpdatePlan planUpdate(const std::vector<String>& paths, const String& revision = {},
                                  const QueryRunner& run = runHere);

/// What a working copy holds that is in no revision.
struct LocalState {
    /// Changed and not committed.
    std::vector<StatusEntry> changes;
    /// Unversioned and ignored; a directory stands for all that is in it.
    std::vector<StatusEntry> unversioned;
    std::vector<UnreadableText> unreadable;
    Error error;
};
/// Without externals. One run that does not ask the repository: enough where a step would meet
/// nothing here.
QUEN_EXPORT LocalState localStateOf(const std::vector<String>& paths,
                                    const QueryRunner& run = runHere);

struct MergePlan {
    /// What the merge would say, as far as it can be told beforehand: `conflicts` are where both
    /// sides have changed the same lines, properties or trees, and the provider's merge decides for
    /// what is here wherever it can.
    ChangeFacts facts;
    /// What is changed and not committed in the target: mixed up with the merge afterwards.
    std::vector<StatusEntry> localChanges;
    std::vector<UnreadableText> unreadable;
    Error error;
};
/// `source` is a URL; the range is that of the client's `-r`, empty for all that is missing.
QUEN_EXPORT MergePlan planMerge(const String& source, const String& target,
                                const String& range = {}, const QueryRunner& run = runHere);

/// Something that a step would bring, in the client's word: `added`, `modified`, `deleted`, or
/// `none` where properties alone differ.
struct PlannedChange {
    String path;
    String item;
};

struct SwitchPlan {
    /// What is different at the new place, by the paths of the working copy.
    std::vector<PlannedChange> incoming;
    std::vector<StatusEntry> localChanges;
    /// Changed here and different at the new place: a conflict for each file in which the same
    /// lines are concerned, since a switch of the provider's settles none.
    std::vector<StatusEntry> changedOnBothSides;
    /// Unversioned items where the new place has some.
    std::vector<StatusEntry> inTheWay;
    std::vector<UnreadableText> unreadable;
    Error error;
};
QUEN_EXPORT SwitchPlan planSwitch(const String& path, const String& url,
                                  const QueryRunner& run = runHere);
/// Likewise, for who asks only what becomes of the work here: where there is none, the repository
/// is not asked, and `incoming` stays empty.
QUEN_EXPORT SwitchPlan planSwitchOfWork(const String& path, const String& url,
                                        const QueryRunner& run = runHere);

struct CheckoutPlan {
    /// What lies at the place of something that the checkout would bring: a tree conflict each, the
    /// same content or not.
    std::vector<String> inTheWay;
    /// The directory is a working copy already.
    bool isWorkingCopy = false;
    Error error;
};
/// Asks the repository only where the directory exists and holds something.
QUEN_EXPORT CheckoutPlan planCheckout(const String& url, const String& directory,
                                      const QueryRunner& run = runHere);

} // namespace quen
