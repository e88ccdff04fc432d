#pragma once

#include "Classes/SVNOperations/SVNQueryOperation.h"

#include <memory>

namespace quen {

/// `svn diff`: with a destination, the paths that differ between the first file and it; without
/// one, the difference of the files as a text.
///
/// The command and the way its output is read are chosen apart from each other: a request with a
/// destination and a range of revisions gets the text of a difference, which is then read as a
/// summary and gives nothing.
class SVNDiffOperation : public SVNQueryOperation {
public:
    bool initWithRequest(QuenSourceControlRequestPtr request) override;

    /// Leaves a result, or nothing at all for output that is empty, that is no text, or that is a
    /// malformed summary.
    void parseData() override;

private:
    std::unique_ptr<SVNReading> makeReading() const override;
    void parseText();
    void parseSummary();
};

} // namespace quen
