#pragma once

#include "Classes/SVNOperations/SVNOperation.h"
#include "MarlFoundation/MarlFilePath.h"

namespace quen {

/// `svn export` of the first file into a temporary one, whose path object is the result.
class SVNExportFileOperation : public SVNOperation {
public:
    bool initWithRequest(QuenSourceControlRequestPtr request) override;

    /// Looks at the disk, not at the output. Leaves a result or, where no file arrived, an error.
    void parseData() override;

private:
    /// Where the client has put the file.
    MarlFilePathPtr pathOfArrival() const;

    MarlFilePathPtr _exportedFilePath;
};

} // namespace quen
