#pragma once

#include "Classes/SVNOperations/SVNOperation.h"

namespace quen {

/// Changes that are scheduled or undone in a working copy, and removal, which also works on the
/// repository itself.

/// `svn add`.
class SVNAddOperation : public SVNOperation {
public:
    bool initWithRequest(QuenSourceControlRequestPtr request) override;
};

/// `svn remove`: files of a working copy or, for RequestTypeRemoteRemove, the item below the
/// repository's branches folder that the destination names.
class SVNRemoveOperation : public SVNOperation {
public:
    /// Sets `error` for a repository whose branches folder is not configured.
    bool initWithRequest(QuenSourceControlRequestPtr request) override;
};

/// `svn resolve`, by accepting the working file as it stands.
class SVNResolveOperation : public SVNOperation {
public:
    bool initWithRequest(QuenSourceControlRequestPtr request) override;
};

/// `svn revert`, always with everything below.
class SVNRevertOperation : public SVNOperation {
public:
    bool initWithRequest(QuenSourceControlRequestPtr request) override;
};

} // namespace quen
