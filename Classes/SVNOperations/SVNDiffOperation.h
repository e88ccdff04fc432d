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
///
/// Leaves a result, or nothing at all for output that is empty, that is not text, or that is a
/// malformed summary.
class SVNDiffOperation : public SVNQueryOperation {
public:
    SVNDiffOperation() : SVNQueryOperation(Malformed::silence) {}

private:
    Command makeCommand(const QuenSourceControlRequest& request) override;
    std::unique_ptr<SVNReading> makeReading(const QuenSourceControlRequest& request) override;
    void parseOutput(const QuenSourceControlRequest& request) override;
    void parseText();
};

} // namespace quen
