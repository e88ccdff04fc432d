#pragma once

#include "Classes/SVNOperations/SVNOperation.h"

namespace quen {

/// Changes that are scheduled or undone in a working copy, and removal, which also works on the
/// repository itself.

/// `svn add`.
class SVNAddOperation : public SVNOperation {
    Command makeCommand(const QuenSourceControlRequest& request) override;
};

/// `svn remove`: files of a working copy or, for RequestTypeRemoteRemove, the item below the
/// repository's branches folder that the destination names. `error` is set from the beginning for a
/// repository whose branches folder is not configured.
class SVNRemoveOperation : public SVNOperation {
    Command makeCommand(const QuenSourceControlRequest& request) override;
};

/// `svn resolve`, by accepting the working file as it stands.
class SVNResolveOperation : public SVNOperation {
    Command makeCommand(const QuenSourceControlRequest& request) override;
};

/// `svn revert`, always with everything below.
class SVNRevertOperation : public SVNOperation {
    Command makeCommand(const QuenSourceControlRequest& request) override;
};

} // namespace quen
