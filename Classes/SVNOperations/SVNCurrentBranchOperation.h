#pragma once

#include "Classes/SVNOperations/SVNOperation.h"

namespace quen {

/// `svn info` of the source tree: the name of the branch that it is on, by where its URL lies
/// among the repository's configured locations.
class SVNCurrentBranchOperation : public SVNOperation {
public:
    bool initWithRequest(QuenSourceControlRequestPtr request) override;

    /// Leaves a result or, for a malformed report, an error.
    void parseData() override;
};

} // namespace quen
