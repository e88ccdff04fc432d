#pragma once

#include "Classes/SVNOperations/SVNOperation.h"
#include "Classes/SVNOperations/SVNReading.h"
#include "Foundation/Date.h"

#include <memory>
#include <string_view>

namespace quen {

/// `svn log`: one record for each revision that touched the first file or, where there is none, the
/// directory that the client runs in.
class SVNLogOperation : public SVNOperation {
public:
    bool initWithRequest(QuenSourceControlRequestPtr request) override;

    void outputArrived(std::string_view piece) override;

    /// Leaves a result or, for a malformed report, an error.
    void parseData() override;

    /// The value of an action letter; 0 for an unknown one, in silence, and for nil, which is a
    /// programming error.
    std::uint32_t statusValueForRepositoryShortStringValue(const String& string) const;

private:
    DateFormatter _formatter;
    /// What was read while the client ran.
    std::unique_ptr<SVNReading> reading_;
};

} // namespace quen
