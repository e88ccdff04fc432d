#pragma once

#include "Classes/SVNOperations/SVNOperation.h"
#include "MarlFoundation/MarlFilePath.h"

namespace quen {

/// Ends an operation whose outcome is a file or directory on disk: the result is one record with
/// the path object. Where nothing is there, or the path is null, there is no result, and the error
/// says that the request's first file has no such revision.
void setFetchedFile(SVNOperation& operation, const MarlFilePathPtr& path);

} // namespace quen
