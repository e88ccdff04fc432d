#pragma once

#include "Classes/SVNOperations/SVNQueryOperation.h"

#include <memory>

namespace quen {

/// `svn info` of the source tree: the name of the branch that it is on, by where its URL lies
/// among the repository's configured locations.
///
/// Leaves a result or, for a malformed report, an error.
class SVNCurrentBranchOperation : public SVNQueryOperation {
    Command makeCommand(const QuenSourceControlRequest& request) override;
    std::unique_ptr<SVNReading> makeReading(const QuenSourceControlRequest& request) override;
};

} // namespace quen
