#pragma once

#include "Classes/SVNOperations/SVNQueryOperation.h"
#include "Foundation/Date.h"

#include <memory>

namespace quen {

/// `svn log`: one record for each revision that touched the first file or, where there is none, the
/// directory that the client runs in.
///
/// Leaves a result or, for a malformed report, an error.
class SVNLogOperation : public SVNQueryOperation {
public:
    SVNLogOperation();

    /// The value of an action letter; 0 for an unknown one, in silence, and for nil, which is a
    /// programming error.
    std::uint32_t statusValueForRepositoryShortStringValue(const String& string) const;

private:
    Command makeCommand(const QuenSourceControlRequest& request) override;
    std::unique_ptr<SVNReading> makeReading(const QuenSourceControlRequest& request) override;

    const DateFormatter _formatter;
};

} // namespace quen
