#include "Classes/SVNOperations/SVNTreeEdits.h"

#include "Classes/SVNDiagnostics.h"
#include "Classes/SVNOperations/SVNArguments.h"
#include "Classes/SVNOperations/SVNRemoteEdits.h"
#include "Classes/SVNOperations/SVNRevisions.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "QuenFoundation/QuenSourceControlErrorCode.h"

namespace quen {

namespace {

String sourceLocationOf(const QuenSourceControlRequest& request) {
    return optionText(request, QuenSourceControlRequestOptionSourceLocation);
}

/// A source location alone suffices, whatever else is not configured.
bool hasLocationsForRemoteCopy(const QuenSourceControlRequest& request) {
    return !sourceLocationOf(request).isNil() ||
           (!trunkURLOf(request).isNil() && !branchesURLOf(request).isNil());
}

/// Both ends of a move lie in the request's tree.
bool treeHoldsMove(const QuenSourceControlRequest& request) {
    const QuenSourceControlSourceTreePtr tree = request.sourceTree();
    return tree != nullptr && tree->containsItemAtLocation(firstFileOf(request)) &&
           tree->containsItemAtLocation(request.destination());
}

} // namespace

SVNOperation::Command SVNCopyOperation::makeCommand(const QuenSourceControlRequest& request) {
    const SVNAssertions assertions(this, "-[SVNCopyOperation initWithRequest:]",
                                   SVNAssertions::operationsFile);
    StringArray command{"copy"};
    if (request.type() == RequestTypeRemoteCopy) {
        assertions.checkIsRepository(request.sourceTree(), "repository", 452);
        if (!hasLocationsForRemoteCopy(request)) {
            setError(missingLocationsError(request));
        }
        const String source = sourceLocationOf(request);
        appendRequiredMessage(command, request);
        appendPiece(command, source.isNil() ? trunkURLOf(request) : source);
        appendPiece(command, destinationBelowBranches(request));
    } else {
        assertions.check(fileCountOf(request) > 0, "[request.files count] > 0", 477);
        appendPiece(command, firstFileOf(request));
        appendPiece(command, request.destination());
    }
    return error() ? Command() : command;
}

SVNOperation::Command
SVNMakeDirectoryOperation::makeCommand(const QuenSourceControlRequest& request) {
    StringArray command{"mkdir"};
    appendMessageIfGiven(command, request);
    appendPiece(command, request.destination());
    return error() ? Command() : command;
}

SVNOperation::Command SVNMergeOperation::makeCommand(const QuenSourceControlRequest& request) {
    StringArray command{"merge", "--accept", "mine-full"};
    if (!request.startingRevision().isNil() && !request.endingRevision().isNil()) {
        // Hosts give the end of a merge in the client's own words; only the start may be a name.
        const String start = headOrBaseRevision(request.startingRevision());
        command.insert(command.end(), {"-r", revisionRange(start, request.endingRevision())});
    }
    appendPiece(command, request.destination());
    if (fileCountOf(request) == 1) {
        command.push_back(request.files()->front());
    }
    return error() ? Command() : command;
}

SVNOperation::Command SVNMoveOperation::makeCommand(const QuenSourceControlRequest& request) {
    if (!treeHoldsMove(request)) {
        setError(sourceControlError(QuenSourceControlErrorInvalidRequest,
                                    "The request could not be performed because it was "
                                    "returned by Subversion as invalid."));
    }
    StringArray command{"move", "--parents"};
    appendPiece(command, firstFileOf(request));
    appendPiece(command, request.destination());
    return error() ? Command() : command;
}

} // namespace quen
