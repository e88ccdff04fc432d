#pragma once

#include "Classes/SVNOperations/SVNOperation.h"
#include "MarlFoundation/MarlFilePath.h"

namespace quen {

/// `svn export` of the first file into a temporary one, whose path object is the result. Where the
/// host has no place for that one, `error` says why, and no arguments are set: the client would
/// write into whatever directory it runs in.
class SVNExportFileOperation : public SVNOperation {
    Command makeCommand(const QuenSourceControlRequest& request) override;
    /// Looks at the disk, not at the output. Leaves a result or, where no file arrived, an error.
    void parseOutput(const QuenSourceControlRequest& request) override;
    /// Where the client has put the file.
    MarlFilePathPtr pathOfArrival() const;

    MarlFilePathPtr _exportedFilePath;
};

} // namespace quen
