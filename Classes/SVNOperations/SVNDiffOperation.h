#pragma once

#include "Classes/SVNOperations/SVNOperation.h"
#include "Classes/SVNOperations/SVNReading.h"

#include <memory>
#include <string_view>

namespace quen {

/// `svn diff`: with a destination, the paths that differ between the first file and it; without
/// one, the difference of the files as a text.
///
/// The command and the way its output is read are chosen apart from each other: a request with a
/// destination and a range of revisions gets the text of a difference, which is then read as a
/// summary and gives nothing.
class SVNDiffOperation : public SVNOperation {
public:
    bool initWithRequest(QuenSourceControlRequestPtr request) override;

    void outputArrived(std::string_view piece) override;

    /// Leaves a result, or nothing at all for output that is empty, that is no text, or that is a
    /// malformed summary.
    void parseData() override;

private:
    void parseText();
    void parseSummary();

    /// What was read of a summary while the client ran.
    std::unique_ptr<SVNReading> reading_;
};

} // namespace quen
