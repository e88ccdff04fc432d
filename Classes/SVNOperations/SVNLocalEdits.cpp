#include "Classes/SVNOperations/SVNLocalEdits.h"

#include "Classes/SVNDiagnostics.h"
#include "Classes/SVNOperations/SVNArguments.h"
#include "Classes/SVNOperations/SVNRemoteEdits.h"

#include <utility>

namespace quen {

namespace {

StringArray addCommandFor(const QuenSourceControlRequest& request) {
    StringArray command{"add"};
    // Only for an absent list: an empty one adds nothing.
    if (!request.files()) {
        command.emplace_back("*");
    }
    appendFiles(command, request);
    return command;
}

StringArray removeCommandFor(const QuenSourceControlRequest& request) {
    StringArray command{"remove", "--force"};
    if (request.type() == RequestTypeRemoteRemove) {
        appendRequiredMessage(command, request);
        appendPiece(command, destinationBelowBranches(request));
    } else {
        appendMessageIfGiven(command, request);
        appendFiles(command, request);
    }
    return command;
}

StringArray resolveCommandFor(const QuenSourceControlRequest& request) {
    StringArray command{"resolve", "--accept", "working"};
    appendFiles(command, request);
    return command;
}

StringArray revertCommandFor(const QuenSourceControlRequest& request) {
    StringArray command{"revert", "-R"};
    appendFiles(command, request);
    return command;
}

} // namespace

// The siblings differ in one point that hosts rely on: an error that is already there keeps a
// removal from getting arguments, and none of the others.

bool SVNAddOperation::initWithRequest(QuenSourceControlRequestPtr request) {
    if (!SVNOperation::initWithRequest(std::move(request))) {
        return false;
    }
    setCommand(addCommandFor(*this->request()));
    return true;
}

bool SVNRemoveOperation::initWithRequest(QuenSourceControlRequestPtr request) {
    if (!SVNOperation::initWithRequest(std::move(request))) {
        return false;
    }
    const QuenSourceControlRequest& asked = *this->request();
    const SVNAssertions assertions(this, "-[SVNRemoveOperation initWithRequest:]",
                                   SVNAssertions::operationsFile);
    if (asked.type() == RequestTypeRemoteRemove) {
        assertions.checkIsRepository(asked.sourceTree(), "repository", 597);
        if (branchesURLOf(asked).isNil()) {
            setError(missingLocationsError(asked));
        }
    } else {
        assertions.check(fileCountOf(asked) > 0, "[request.files count] > 0", 612);
    }
    if (!error()) {
        setCommand(removeCommandFor(asked));
    }
    return true;
}

bool SVNResolveOperation::initWithRequest(QuenSourceControlRequestPtr request) {
    if (!SVNOperation::initWithRequest(std::move(request))) {
        return false;
    }
    setCommand(resolveCommandFor(*this->request()));
    return true;
}

bool SVNRevertOperation::initWithRequest(QuenSourceControlRequestPtr request) {
    if (!SVNOperation::initWithRequest(std::move(request))) {
        return false;
    }
    setCommand(revertCommandFor(*this->request()));
    return true;
}

} // namespace quen
