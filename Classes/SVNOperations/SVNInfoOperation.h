#pragma once

#include "Classes/SVNOperations/SVNQueryOperation.h"
#include "Foundation/Date.h"

#include <memory>

namespace quen {

/// `svn info`: where each item lives in the repository, and its last change. The two check types
/// only want to know whether the client succeeds.
///
/// Leaves a result or, for a malformed report, an error; for a check neither.
class SVNInfoOperation : public SVNQueryOperation {
public:
    SVNInfoOperation();

private:
    Command makeCommand(const QuenSourceControlRequest& request) override;
    std::unique_ptr<SVNReading> makeReading(const QuenSourceControlRequest& request) override;

    const DateFormatter _formatter;
};

} // namespace quen
