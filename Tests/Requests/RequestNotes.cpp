#include "Tests/Requests/RequestNotes.h"

#include <array>

namespace quen::test {

namespace {

struct Row {
    std::string_view type;
    RequestNotes notes;
};

constexpr std::array rows{
    Row{"RequestTypeAdd",
        {"Put files under version control.",
         "Schedules the files, and what lies below directories, for the next commit.",
         "Ignored files below a directory are left out. A file that is under version control "
         "already only gives a warning."}},
    Row{"RequestTypeRemoteCopy",
        {"Make a branch, in the repository.",
         "Makes a revision at once. The destination is the branch's name below the repository's "
         "`branchesLocation`; what is copied is the option's source location, or the trunk.",
         "The source tree must be the repository itself. Without `branchesLocation` in its record "
         "the operation is made with the error -23 set, and is not to be run."}},
    Row{"RequestTypeRemoteRemove",
        {"Remove a branch, in the repository.",
         "Makes a revision at once. The destination is the branch's name.",
         "The source tree must be the repository itself. The reference host refuses a destination "
         "that names nothing (empty, `.`, `/`): the client would remove the folder of branches "
         "with all of them."}},
    Row{"RequestTypeCommit",
        {"Send changes to the repository.",
         "Makes a revision where anything has changed. The result holds its number; without a "
         "change there is no record.",
         "A directory sends everything that has changed below it. The message goes as one "
         "argument; without one the client would start an editor, and fails instead."}},
    Row{"RequestTypeIgnore",
        {"Add names to the ignore list of their directories.",
         "Edits the property `svn:ignore` of each file's directory, one file after the other.",
         "The name goes in front. Names in the list that hold no letter or digit are dropped when "
         "it is written anew. An edit that fails leaves no trace in the error: look at the "
         "property, or at `addIgnored` of `Host/Embedding`. The operation runs no client itself: "
         "it has no arguments, and waits for the steps on a queue of its own."}},
    Row{"RequestTypeRemove",
        {"Remove files from version control.",
         "Schedules the removal and takes the files off the disk. A URL is removed from the "
         "repository at once, and needs a message.",
         "Local changes of the files are lost, and files that are not under version control go "
         "too: `planRemove` of `Host/Plans` says before what is lost, `UndoStore` keeps it."}},
    Row{"RequestTypeResolve",
        {"Mark conflicts as settled.",
         "The files stay as they are; what the client kept beside them goes.",
         "Nothing is merged: what is on the disk counts, conflict markers included."}},
    Row{"RequestTypeRevert",
        {"Take local changes back.",
         "Loses the local changes of the files, and of everything below directories. There is no "
         "undo: `planRevert` of `Host/Plans` says before what is lost, `UndoStore` keeps it.",
         "A file that was added stays on the disk, no longer under version control."}},
    Row{"RequestTypeMakeDirectory",
        {"Make a directory under version control.",
         "A path is made and scheduled; a URL is made in the repository at once.",
         "`files` is not looked at: the directory is the destination. A URL needs a message."}},
    Row{"RequestTypeMerge",
        {"Merge changes from elsewhere into a working copy.",
         "Changes the working copy; nothing is committed. Where both sides changed a text, the "
         "local one stays: what came in is lost unless `Host/Keeping` keeps it.",
         "A working copy without its own repository record is merged into all the same. Update "
         "first: the client refuses a working copy of mixed revisions."}},
    Row{"RequestTypeCopy",
        {"Copy a file or directory with its history.",
         "A copy within the working copy is scheduled; a copy to a URL makes a revision at once.",
         "Only the first of `files` is copied."}},
    Row{"RequestTypeMove",
        {"Move or rename a file or directory with its history.",
         "Schedules both ends for the next commit; makes missing directories of the destination.",
         "Only one file: with several the operation is made with the error -12 set, and is not to "
         "be run. A destination that exists as a file is the error -60."}},
    Row{"RequestTypeUnignore",
        {"Take names out of the ignore list of their directories.",
         "Edits or removes the property `svn:ignore` of each file's directory.",
         "A name that is not in the list is an error that has no text of its own, below one that "
         "has. The pitfalls of `RequestTypeIgnore` hold here too."}},
    Row{"RequestTypeUpdate",
        {"Bring a working copy up to date, or to a revision.",
         "Changes the working copy. Where both sides changed a text, the local one stays "
         "(`mine-full`).",
         "The result is empty: what changed is in the client's output, which `ChangeFactsReader` "
         "reads."}},
    Row{"RequestTypeSwitch",
        {"Switch a working copy to another branch.",
         "Changes the working copy; local changes are carried over.",
         "Only the first of `files` is switched. The result is empty."}},
    Row{"RequestTypeStatus",
        {"What has changed in a working copy.", "None; the repository is not asked.",
         "Ignored items are listed too. Unchanged items that were asked for by name have a record "
         "with status 0. A path that is not in a working copy is an error beside the records of "
         "the others."}},
    Row{"RequestTypeRemoteStatus",
        {"What has changed, here and in the repository.", "None.",
         "Not valid without a source tree."}},
    Row{"RequestTypeList",
        {"What a directory of the repository holds.", "None.",
         "Only the first of `files` is listed, and one level of it."}},
    Row{"RequestTypeLog",
        {"The history of a file or directory.", "None.",
         "Only the first of `files` is looked at. Without a limit the whole history comes. A "
         "working copy's own history ends at the revision that it was updated to."}},
    Row{"RequestTypeInfo",
        {"Where an item comes from: URL, root, revision, author, date.", "None.",
         "The records do not name their path: they come in the order of `files`."}},
    Row{"RequestTypeCheckout",
        {"Make a working copy.",
         "Writes the destination. The result names it, as a file path object.",
         "Only the first of `files`, the URL, is checked out. A directory that exists is used as "
         "it is: `planCheckout` says what is in the way."}},
    Row{"RequestTypeExportFile",
        {"The content of a file at a revision, for comparing.",
         "Writes a temporary file, whose path object is the result. It goes when the last holder "
         "of that object lets go.",
         "Exactly one file. No authentication is needed only where the starting revision is the "
         "very `QuenSourceControlBASERevisionName`."}},
    Row{"RequestTypeImport",
        {"Put a directory into the repository.",
         "Makes a revision at once. The directory does not become a working copy.",
         "Exactly one file. The message and the source location, which is where it goes, are "
         "required."}},
    Row{"RequestTypeListBranches",
        {"The names of the branches.", "None.",
         "`files` is not looked at: the branches are those of the repository's `branchesLocation`. "
         "Without it, or where it is not there, the error is -90."}},
    Row{"RequestTypeCurrentBranch",
        {"Which branch a working copy is on.", "None.",
         "Needs the repository's `trunkLocation` and `branchesLocation`: without them the result "
         "is empty. `files` is not looked at. The name is `QuenSourceControlTrunkBranchName` for "
         "the trunk."}},
    Row{"RequestTypeBlame",
        {"Who last changed each line of a file.", "None.",
         "Exactly one file. The line's text is not part of the record: read the file, or export "
         "it."}},
    Row{"RequestTypeDiff",
        {"The differences between two revisions, between two URLs, or between a working copy and "
         "its base.",
         "None.",
         "With a destination the result is a list of paths with their status, of the first of "
         "`files` and the destination; without one it is one text. Without a range and without a "
         "destination `files` is not passed on: the client looks at the directory in which it "
         "runs. The local changes of chosen files need a range all the same: the starting revision "
         "`^` with an empty ending revision. `Host/Embedding` knows that. Where the list cannot be "
         "read, there is neither a result nor an error."}},
    Row{"RequestTypeInfoCheck",
        {"Whether files are under version control: if there is no error, they are.", "None.",
         "There is no result. Whether the source tree can be reached does not matter."}},
    Row{"RequestTypeInfoCheckAlternate",
        {"The same as `RequestTypeInfoCheck`.", "None.", "See `RequestTypeInfoCheck`."}},
    Row{"RequestTypeLogAll",
        {"The history of the directory in which the client runs.", "None.",
         "Give `files`, or a working directory in the run's context: with neither the client looks "
         "at the directory of the process."}},
};

} // namespace

RequestNotes notesOfRequest(std::string_view type) {
    for (const Row& row : rows) {
        if (row.type == type) {
            return row.notes;
        }
    }
    return {};
}

} // namespace quen::test
