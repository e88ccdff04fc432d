#pragma once

#include "Classes/SVNOperations/SVNOperation.h"

namespace quen {

/// Whole trees on their way between the repository and the disk.

/// `svn checkout`: one record, with the path object of the new working copy.
class SVNCheckoutOperation : public SVNOperation {
    Command makeCommand(const QuenSourceControlRequest& request) override;
    /// Looks at the disk alone: what the client printed does not count.
    void parseOutput(const QuenSourceControlRequest& request) override;
};

/// `svn import`.
class SVNImportOperation : public SVNOperation {
    Command makeCommand(const QuenSourceControlRequest& request) override;
};

/// `svn switch`.
class SVNSwitchOperation : public SVNOperation {
    Command makeCommand(const QuenSourceControlRequest& request) override;
};

/// `svn update`, in which the working copy's own side wins every conflict.
class SVNUpdateOperation : public SVNOperation {
    Command makeCommand(const QuenSourceControlRequest& request) override;
};

} // namespace quen
