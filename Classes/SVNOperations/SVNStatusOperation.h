#pragma once

#include "Classes/SVNOperations/SVNOperation.h"
#include "Classes/SVNOperations/SVNReading.h"

#include <memory>
#include <string_view>

namespace quen {

/// `svn status`: one record for each item that has something to report, with its status in the
/// working copy and, for RequestTypeRemoteStatus, in the repository.
class SVNStatusOperation : public SVNOperation {
public:
    bool initWithRequest(QuenSourceControlRequestPtr request) override;

    void outputArrived(std::string_view piece) override;

    /// Always leaves a result, if only an empty one, and lets go of `data`.
    void parseData() override;

private:
    /// What was read while the client ran.
    std::unique_ptr<SVNReading> reading_;
};

} // namespace quen
