#pragma once

#include "Classes/SVNOperations/SVNOperation.h"

namespace quen {

/// Copies, moves, new directories and merges. An operation whose `error` is set, be it by the base,
/// gets no arguments.

/// `svn copy`: the first file within a working copy or, for RequestTypeRemoteCopy, the trunk (or
/// the source location that the options name) to a branch, within the repository.
class SVNCopyOperation : public SVNOperation {
public:
    /// Sets `error` for a repository whose trunk and branches are not configured, unless the
    /// options name a source location.
    bool initWithRequest(QuenSourceControlRequestPtr request) override;
};

/// `svn mkdir`.
class SVNMakeDirectoryOperation : public SVNOperation {
public:
    bool initWithRequest(QuenSourceControlRequestPtr request) override;
};

/// `svn merge`, in which the working copy's own side wins every conflict.
class SVNMergeOperation : public SVNOperation {
public:
    bool initWithRequest(QuenSourceControlRequestPtr request) override;
};

/// `svn move`, with missing parent directories made: within one source tree only.
class SVNMoveOperation : public SVNOperation {
public:
    /// Sets `error` where the source or the target lies outside the request's source tree.
    bool initWithRequest(QuenSourceControlRequestPtr request) override;
};

} // namespace quen
