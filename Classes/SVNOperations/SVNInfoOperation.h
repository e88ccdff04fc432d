#pragma once

#include "Classes/SVNOperations/SVNOperation.h"
#include "Classes/SVNOperations/SVNReading.h"
#include "Foundation/Date.h"

#include <memory>
#include <string_view>

namespace quen {

/// `svn info`: where each item lives in the repository, and its last change. The two check types
/// only want to know whether the client succeeds.
class SVNInfoOperation : public SVNOperation {
public:
    bool initWithRequest(QuenSourceControlRequestPtr request) override;

    void outputArrived(std::string_view piece) override;

    /// Leaves a result or, for a malformed report, an error; for a check neither.
    void parseData() override;

private:
    DateFormatter _formatter;
    /// What was read while the client ran.
    std::unique_ptr<SVNReading> reading_;
};

} // namespace quen
