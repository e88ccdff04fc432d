#include "Classes/SVNOperations/SVNTransfers.h"

#include "Classes/SVNOperations/SVNArguments.h"
#include "Classes/SVNOperations/SVNFetchedFile.h"
#include "Classes/SVNOperations/SVNRevisions.h"
#include "QuenFoundation/QuenSourceControlConstants.h"

namespace quen {

namespace {

void appendUnlessEmpty(StringArray& command, const String& piece) {
    if (!piece.isEmpty()) {
        command.push_back(piece);
    }
}

} // namespace

// The siblings differ in one point that hosts rely on: an error that is already there keeps a
// switch from getting arguments, and none of the others.

SVNOperation::Command SVNCheckoutOperation::makeCommand(const QuenSourceControlRequest& request) {
    StringArray command{"checkout"};
    const String revision = headOnlyRevision(request.startingRevision());
    if (!revision.isEmpty()) {
        command.insert(command.end(), {"-r", revision});
    }
    appendUnlessEmpty(command, firstFileOf(request));
    appendUnlessEmpty(command, request.destination());
    return command;
}

void SVNCheckoutOperation::parseOutput(const QuenSourceControlRequest& request) {
    setFetchedFile(*this, MarlFilePath::filePathForPathString(request.destination()));
}

SVNOperation::Command SVNImportOperation::makeCommand(const QuenSourceControlRequest& request) {
    StringArray command{"import"};
    if (fileCountOf(request) > 0) {
        command.push_back(request.files()->back());
    }
    appendPiece(command, optionText(request, QuenSourceControlRequestOptionSourceLocation));
    appendRequiredMessage(command, request);
    return command;
}

SVNOperation::Command SVNSwitchOperation::makeCommand(const QuenSourceControlRequest& request) {
    StringArray command{"switch"};
    appendPiece(command, request.destination());
    appendPiece(command, firstFileOf(request));
    return error() ? Command() : command;
}

SVNOperation::Command SVNUpdateOperation::makeCommand(const QuenSourceControlRequest& request) {
    StringArray command{"update", "--accept", "mine-full"};
    if (!request.startingRevision().isNil()) {
        command.insert(command.end(), {"-r", headOrBaseRevision(request.startingRevision())});
    }
    appendFiles(command, request);
    return command;
}

} // namespace quen
