#pragma once

#include "Tools/Commands/Places/SourceTreeFinder.h"

#include <string>

namespace quen::tools {

/// Whether a branch, or what the noun says, of that name can be made; told where it cannot: the
/// name leads elsewhere, there is one already, or the directory that it would lie in is not there.
/// ExitSuccess, or the exit status of the command.
int checkNewBranch(Session& session, const SourceTree& source, const std::string& name,
                   const std::string& noun = "branch");

/// How sure a person is before a branch is deleted.
struct BranchDeletion {
    /// Also the branch that `path` is on.
    bool isForced = false;
    bool isSure = false;
    /// A path or URL in the project.
    std::string path;
};

/// Whether a branch is there and may be deleted; asks on a terminal. What keeps it from that has
/// been told. ExitSuccess, or the exit status of the command.
int checkBranchDeletion(Session& session, const SourceTree& source, const std::string& name,
                        const BranchDeletion& deletion);

} // namespace quen::tools
