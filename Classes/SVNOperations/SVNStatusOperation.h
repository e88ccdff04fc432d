#pragma once

#include "Classes/SVNOperations/SVNQueryOperation.h"

#include <memory>

namespace quen {

/// `svn status`: one record for each item that has something to report, with its status in the
/// working copy and, for RequestTypeRemoteStatus, in the repository.
class SVNStatusOperation : public SVNQueryOperation {
public:
    bool initWithRequest(QuenSourceControlRequestPtr request) override;

    /// Always leaves a result, if only an empty one, and lets go of `data`.
    void parseData() override;

private:
    std::unique_ptr<SVNReading> makeReading() const override;
};

} // namespace quen
