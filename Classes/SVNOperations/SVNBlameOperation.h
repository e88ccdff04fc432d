#pragma once

#include "Classes/SVNOperations/SVNOperation.h"
#include "Classes/SVNOperations/SVNReading.h"
#include "Foundation/Date.h"

#include <memory>
#include <string_view>

namespace quen {

/// `svn blame`: for each line of the first file, the change that last touched it. The lines' own
/// text is no part of the report.
class SVNBlameOperation : public SVNOperation {
public:
    bool initWithRequest(QuenSourceControlRequestPtr request) override;

    void outputArrived(std::string_view piece) override;

    /// Always leaves a result, if only an empty one beside the error of a malformed report.
    void parseData() override;

private:
    DateFormatter _formatter;
    /// What was read while the client ran.
    std::unique_ptr<SVNReading> reading_;
};

} // namespace quen
