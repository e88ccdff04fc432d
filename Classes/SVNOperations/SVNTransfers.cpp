#include "Classes/SVNOperations/SVNTransfers.h"

#include "Classes/SVNOperations/SVNArguments.h"
#include "Classes/SVNOperations/SVNFetchedFile.h"
#include "Classes/SVNOperations/SVNRevisions.h"
#include "QuenFoundation/QuenSourceControlConstants.h"

#include <utility>

namespace quen {

namespace {

void appendUnlessEmpty(StringArray& command, const String& piece) {
    if (!piece.isEmpty()) {
        command.push_back(piece);
    }
}

StringArray checkoutCommandFor(const QuenSourceControlRequest& request) {
    StringArray command{"checkout"};
    const String revision = headOnlyRevision(request.startingRevision());
    if (!revision.isEmpty()) {
        command.insert(command.end(), {"-r", revision});
    }
    appendUnlessEmpty(command, firstFileOf(request));
    appendUnlessEmpty(command, request.destination());
    return command;
}

StringArray importCommandFor(const QuenSourceControlRequest& request) {
    StringArray command{"import"};
    if (fileCountOf(request) > 0) {
        command.push_back(request.files()->back());
    }
    appendPiece(command, optionText(request, QuenSourceControlRequestOptionSourceLocation));
    appendRequiredMessage(command, request);
    return command;
}

StringArray switchCommandFor(const QuenSourceControlRequest& request) {
    StringArray command{"switch"};
    appendPiece(command, request.destination());
    appendPiece(command, firstFileOf(request));
    return command;
}

StringArray updateCommandFor(const QuenSourceControlRequest& request) {
    StringArray command{"update", "--accept", "mine-full"};
    if (!request.startingRevision().isNil()) {
        command.insert(command.end(), {"-r", headOrBaseRevision(request.startingRevision())});
    }
    appendFiles(command, request);
    return command;
}

} // namespace

// The siblings differ in one point that hosts rely on: an error that is already there keeps a
// switch from getting arguments, and none of the others.

bool SVNCheckoutOperation::initWithRequest(QuenSourceControlRequestPtr request) {
    if (!SVNOperation::initWithRequest(std::move(request))) {
        return false;
    }
    setCommand(checkoutCommandFor(*this->request()));
    return true;
}

void SVNCheckoutOperation::parseData() {
    reportFetchedFile(*this, MarlFilePath::filePathForPathString(request()->destination()));
}

bool SVNImportOperation::initWithRequest(QuenSourceControlRequestPtr request) {
    if (!SVNOperation::initWithRequest(std::move(request))) {
        return false;
    }
    setCommand(importCommandFor(*this->request()));
    return true;
}

bool SVNSwitchOperation::initWithRequest(QuenSourceControlRequestPtr request) {
    if (!SVNOperation::initWithRequest(std::move(request))) {
        return false;
    }
    if (!error()) {
        setCommand(switchCommandFor(*this->request()));
    }
    return true;
}

bool SVNUpdateOperation::initWithRequest(QuenSourceControlRequestPtr request) {
    if (!SVNOperation::initWithRequest(std::move(request))) {
        return false;
    }
    setCommand(updateCommandFor(*this->request()));
    return true;
}

} // namespace quen
