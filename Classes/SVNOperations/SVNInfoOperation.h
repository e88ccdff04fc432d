#pragma once

#include "Classes/SVNOperations/SVNQueryOperation.h"
#include "Foundation/Date.h"

#include <memory>

namespace quen {

/// `svn info`: where each item lives in the repository, and its last change. The two check types
/// only want to know whether the client succeeds.
class SVNInfoOperation : public SVNQueryOperation {
public:
    bool initWithRequest(QuenSourceControlRequestPtr request) override;

    /// Leaves a result or, for a malformed report, an error; for a check neither.
    void parseData() override;

private:
    std::unique_ptr<SVNReading> makeReading() const override;

    DateFormatter _formatter;
};

} // namespace quen
