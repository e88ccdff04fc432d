#pragma once

#include "Classes/SVNOperations/SVNQueryOperation.h"

#include <memory>

namespace quen {

/// `svn status`: one record for each item that has something to report, with its status in the
/// working copy and, for RequestTypeRemoteStatus, in the repository.
///
/// Always leaves a result, if only an empty one beside the error of a malformed report, and lets go
/// of `data`.
class SVNStatusOperation : public SVNQueryOperation {
public:
    SVNStatusOperation();

private:
    Command makeCommand(const QuenSourceControlRequest& request) override;
    std::unique_ptr<SVNReading> makeReading(const QuenSourceControlRequest& request) override;
    void parseOutput(const QuenSourceControlRequest& request) override;
};

} // namespace quen
