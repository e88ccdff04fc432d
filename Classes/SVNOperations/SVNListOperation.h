#pragma once

#include "Classes/SVNOperations/SVNOperation.h"
#include "Classes/SVNOperations/SVNReading.h"

#include <memory>
#include <string_view>

namespace quen {

/// `svn list`: the names of what lies directly inside the first file or, for
/// RequestTypeListBranches, inside the repository's branches location.
class SVNListOperation : public SVNOperation {
public:
    /// Sets `error` when branches are asked for and nobody knows where they are. The arguments are
    /// set all the same, without a location.
    bool initWithRequest(QuenSourceControlRequestPtr request) override;

    void outputArrived(std::string_view piece) override;

    /// Leaves a result or, for a malformed report, an error.
    void parseData() override;

private:
    /// What was read while the client ran.
    std::unique_ptr<SVNReading> reading_;
};

} // namespace quen
