#pragma once

#include "Classes/SVNOperations/SVNQueryOperation.h"

#include <memory>

namespace quen {

/// `svn list`: the names of what lies directly inside the first file or, for
/// RequestTypeListBranches, inside the repository's branches location.
///
/// `error` is set from the beginning when branches are asked for and nobody knows where they are;
/// the arguments are set all the same, without a location. Leaves a result or, for a malformed
/// report, an error.
class SVNListOperation : public SVNQueryOperation {
    Command makeCommand(const QuenSourceControlRequest& request) override;
    std::unique_ptr<SVNReading> makeReading(const QuenSourceControlRequest& request) override;
};

} // namespace quen
