#include "Classes/SVNOperations/SVNFetchedFile.h"

#include "Classes/SVNDiagnostics.h"
#include "Classes/SVNOperations/SVNRevisions.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "QuenFoundation/QuenSourceControlErrorCode.h"

namespace quen {

void setFetchedFile(SVNOperation& operation, const MarlFilePathPtr& path) {
    if (path != nullptr && path->existsInFileSystem()) {
        operation.setResult(Array{Dictionary{{QuenSourceControlOperationPathKey, path}}});
        return;
    }
    const QuenSourceControlRequest& request = *operation.request();
    operation.setResult({});
    operation.setError(sourceControlError(
        QuenSourceControlErrorRevisionNotFound,
        formatText("The revision %@ was not found for the file \"%@\".",
                   {headOnlyRevision(request.startingRevision()), firstFileOf(request)})));
}

} // namespace quen
