#include "Classes/SVNOperations/SVNLocalEdits.h"

#include "Classes/SVNDiagnostics.h"
#include "Classes/SVNOperations/SVNArguments.h"
#include "Classes/SVNOperations/SVNRemoteEdits.h"

namespace quen {

// The siblings differ in one point that hosts rely on: an error that is already there keeps a
// removal from getting arguments, and none of the others.

SVNOperation::Command SVNAddOperation::makeCommand(const QuenSourceControlRequest& request) {
    StringArray command{"add"};
    // Only for an absent list: an empty one adds nothing.
    if (!request.files()) {
        command.emplace_back("*");
    }
    appendFiles(command, request);
    return command;
}

SVNOperation::Command SVNRemoveOperation::makeCommand(const QuenSourceControlRequest& request) {
    const SVNAssertions assertions(this, "-[SVNRemoveOperation initWithRequest:]",
                                   SVNAssertions::operationsFile);
    StringArray command{"remove", "--force"};
    if (request.type() == RequestTypeRemoteRemove) {
        assertions.checkIsRepository(request.sourceTree(), "repository", 597);
        if (branchesURLOf(request).isNil()) {
            setError(missingLocationsError(request));
        }
        appendRequiredMessage(command, request);
        appendPiece(command, destinationBelowBranches(request));
    } else {
        assertions.check(fileCountOf(request) > 0, "[request.files count] > 0", 612);
        appendMessageIfGiven(command, request);
        appendFiles(command, request);
    }
    return error() ? Command() : command;
}

SVNOperation::Command SVNResolveOperation::makeCommand(const QuenSourceControlRequest& request) {
    StringArray command{"resolve", "--accept", "working"};
    appendFiles(command, request);
    return command;
}

SVNOperation::Command SVNRevertOperation::makeCommand(const QuenSourceControlRequest& request) {
    StringArray command{"revert", "-R"};
    appendFiles(command, request);
    return command;
}

} // namespace quen
