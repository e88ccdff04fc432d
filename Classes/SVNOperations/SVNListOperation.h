#pragma once

#include "Classes/SVNOperations/SVNQueryOperation.h"

#include <memory>

namespace quen {

/// `svn list`: the names of what lies directly inside the first file or, for
/// RequestTypeListBranches, inside the repository's branches location.
class SVNListOperation : public SVNQueryOperation {
public:
    /// Sets `error` when branches are asked for and nobody knows where they are. The arguments are
    /// set all the same, without a location.
    bool initWithRequest(QuenSourceControlRequestPtr request) override;

    /// Leaves a result or, for a malformed report, an error.
    void parseData() override;

private:
    std::unique_ptr<SVNReading> makeReading() const override;
};

} // namespace quen
