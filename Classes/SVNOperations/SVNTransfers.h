#pragma once

#include "Classes/SVNOperations/SVNOperation.h"

namespace quen {

/// Whole trees on their way between the repository and the disk.

/// `svn checkout`: one record, with the path object of the new working copy.
class SVNCheckoutOperation : public SVNOperation {
public:
    bool initWithRequest(QuenSourceControlRequestPtr request) override;

    /// Looks at the disk alone: what the client printed does not count.
    void parseData() override;
};

/// `svn import`.
class SVNImportOperation : public SVNOperation {
public:
    bool initWithRequest(QuenSourceControlRequestPtr request) override;
};

/// `svn switch`.
class SVNSwitchOperation : public SVNOperation {
public:
    bool initWithRequest(QuenSourceControlRequestPtr request) override;
};

/// `svn update`, in which the working copy's own side wins every conflict.
class SVNUpdateOperation : public SVNOperation {
public:
    bool initWithRequest(QuenSourceControlRequestPtr request) override;
};

} // namespace quen
