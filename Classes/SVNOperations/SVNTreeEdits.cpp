#include "Classes/SVNOperations/SVNTreeEdits.h"

#include "Classes/SVNDiagnostics.h"
#include "Classes/SVNOperations/SVNArguments.h"
#include "Classes/SVNOperations/SVNRemoteEdits.h"
#include "Classes/SVNOperations/SVNRevisions.h"
#include "QuenFoundation/QuenSourceControlConstants.h"

#include <utility>

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

StringArray copyCommandFor(const QuenSourceControlRequest& request) {
    StringArray command{"copy"};
    if (request.type() == RequestTypeRemoteCopy) {
        const String source = sourceLocationOf(request);
        appendRequiredMessage(command, request);
        appendPiece(command, source.isNil() ? trunkURLOf(request) : source);
        appendPiece(command, destinationBelowBranches(request));
    } else {
        appendPiece(command, firstFileOf(request));
        appendPiece(command, request.destination());
    }
    return command;
}

StringArray makeDirectoryCommandFor(const QuenSourceControlRequest& request) {
    StringArray command{"mkdir"};
    appendMessageIfGiven(command, request);
    appendPiece(command, request.destination());
    return command;
}

StringArray mergeCommandFor(const QuenSourceControlRequest& request) {
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
    return command;
}

StringArray moveCommandFor(const QuenSourceControlRequest& request) {
    StringArray command{"move", "--parents"};
    appendPiece(command, firstFileOf(request));
    appendPiece(command, request.destination());
    return command;
}

/// Both ends of a move lie in the request's tree.
bool treeHoldsMove(const QuenSourceControlRequest& request) {
    const QuenSourceControlSourceTreePtr tree = request.sourceTree();
    return tree != nullptr && tree->containsItemAtLocation(firstFileOf(request)) &&
           tree->containsItemAtLocation(request.destination());
}

} // namespace

bool SVNCopyOperation::initWithRequest(QuenSourceControlRequestPtr request) {
    if (!SVNOperation::initWithRequest(std::move(request))) {
        return false;
    }
    const QuenSourceControlRequest& asked = *this->request();
    const SVNAssertions assertions(this, "-[SVNCopyOperation initWithRequest:]",
                                   SVNAssertions::operationsFile);
    if (asked.type() == RequestTypeRemoteCopy) {
        assertions.checkIsRepository(asked.sourceTree(), "repository", 452);
        if (!hasLocationsForRemoteCopy(asked)) {
            setError(missingLocationsError(asked));
        }
    } else {
        assertions.check(fileCountOf(asked) > 0, "[request.files count] > 0", 477);
    }
    if (!error()) {
        setCommand(copyCommandFor(asked));
    }
    return true;
}

bool SVNMakeDirectoryOperation::initWithRequest(QuenSourceControlRequestPtr request) {
    if (!SVNOperation::initWithRequest(std::move(request))) {
        return false;
    }
    if (!error()) {
        setCommand(makeDirectoryCommandFor(*this->request()));
    }
    return true;
}

bool SVNMergeOperation::initWithRequest(QuenSourceControlRequestPtr request) {
    if (!SVNOperation::initWithRequest(std::move(request))) {
        return false;
    }
    if (!error()) {
        setCommand(mergeCommandFor(*this->request()));
    }
    return true;
}

bool SVNMoveOperation::initWithRequest(QuenSourceControlRequestPtr request) {
    if (!SVNOperation::initWithRequest(std::move(request))) {
        return false;
    }
    const QuenSourceControlRequest& asked = *this->request();
    if (!treeHoldsMove(asked)) {
        setError(sourceControlError(-12, "The request could not be performed because it was "
                                         "returned by Subversion as invalid."));
    }
    if (!error()) {
        setCommand(moveCommandFor(asked));
    }
    return true;
}

} // namespace quen
