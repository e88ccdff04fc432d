#pragma once

#include "Classes/SVNOperations/SVNQueryOperation.h"
#include "Foundation/Date.h"

#include <memory>

namespace quen {

/// `svn blame`: for each line of the first file, the change that last touched it. The lines' own
/// text is not part of the report.
///
/// Always leaves a result, if only an empty one beside the error of a malformed report.
class SVNBlameOperation : public SVNQueryOperation {
public:
    SVNBlameOperation();

private:
    Command makeCommand(const QuenSourceControlRequest& request) override;
    std::unique_ptr<SVNReading> makeReading(const QuenSourceControlRequest& request) override;

    const DateFormatter _formatter;
};

} // namespace quen
