#pragma once

#include "Classes/SVNOperations/SVNOperation.h"

namespace quen {

/// `svn commit`: sends the changes of the request's files to the repository. One record, with the
/// revision that the repository made of them; no result where it made none.
class SVNCommitOperation : public SVNOperation {
    Command makeCommand(const QuenSourceControlRequest& request) override;
    /// Leaves the result alone when the client printed nothing at all.
    void parseOutput(const QuenSourceControlRequest& request) override;
};

} // namespace quen
