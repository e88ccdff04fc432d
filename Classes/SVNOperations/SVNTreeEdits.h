#pragma once

#include "Classes/SVNOperations/SVNOperation.h"

namespace quen {

/// Copies, moves, new directories and merges. An operation whose `error` is set, be it by the base,
/// gets no arguments.

/// `svn copy`: the first file within a working copy or, for RequestTypeRemoteCopy, the trunk (or
/// the source location that the options name) to a branch, within the repository.
///
/// `error` is set from the beginning for a repository whose trunk and branches are not configured,
/// unless the options name a source location.
class SVNCopyOperation : public SVNOperation {
    Command makeCommand(const QuenSourceControlRequest& request) override;
};

/// `svn mkdir`.
class SVNMakeDirectoryOperation : public SVNOperation {
    Command makeCommand(const QuenSourceControlRequest& request) override;
};

/// `svn merge`, in which the working copy's own side wins every conflict.
class SVNMergeOperation : public SVNOperation {
    Command makeCommand(const QuenSourceControlRequest& request) override;
};

/// `svn move`, with missing parent directories made: within one source tree only. `error` is set
/// from the beginning where the source or the target lies outside the request's source tree.
class SVNMoveOperation : public SVNOperation {
    Command makeCommand(const QuenSourceControlRequest& request) override;
};

} // namespace quen
