#include "Classes/SVNOperations/SVNExportFileOperation.h"

#include "Classes/SVNDiagnostics.h"
#include "Classes/SVNOperations/SVNArguments.h"
#include "Classes/SVNOperations/SVNFetchedFile.h"
#include "Classes/SVNOperations/SVNRevisions.h"
#include "Foundation/PegPath.h"
#include "QuenFoundation/QuenSourceControlErrorCode.h"
#include "QuenFoundation/QuenSourceControlFunctions.h"

namespace quen {

namespace {

/// Pieces that are absent are left out.
StringArray commandFor(const QuenSourceControlRequest& request, const String& target) {
    StringArray command{"export"};
    String source = firstFileOf(request);
    const String revision = headOrBaseRevision(request.startingRevision());
    if (!revision.isNil()) {
        command.insert(command.end(), {"-r", revision});
        if (!source.isNil() && suppliesDirectRevision(request)) {
            source = locationAtRevision(source, revision);
        }
    }
    appendPiece(command, source);
    appendPiece(command, target);
    return command;
}

/// For a host that does not say why.
Error noPlaceFor(const String& file) {
    return sourceControlError(
        QuenSourceControlErrorRevisionNotFound,
        formatText("There is no place for a temporary copy of the file \"%@\".", {file}));
}

} // namespace

SVNOperation::Command SVNExportFileOperation::makeCommand(const QuenSourceControlRequest& request) {
    Error reason;
    _exportedFilePath =
        QuenSourceControl_filePathForTmpFileBasedOnFileName(firstFileOf(request), &reason);
    if (_exportedFilePath == nullptr) {
        setError(reason ? reason : noPlaceFor(firstFileOf(request)));
        return {};
    }
    return commandFor(request, _exportedFilePath->pathString());
}

void SVNExportFileOperation::parseOutput(const QuenSourceControlRequest& /*request*/) {
    setFetchedFile(*this, pathOfArrival());
}

MarlFilePathPtr SVNExportFileOperation::pathOfArrival() const {
    if (_exportedFilePath == nullptr || !_exportedFilePath->fileName().hasSuffix("@")) {
        return _exportedFilePath;
    }
    // The client took the `@` at the end for an empty peg revision and left it away.
    const String pathString = _exportedFilePath->pathString();
    SVNAssertions(this, "-[SVNExportFileOperation parseData]", SVNAssertions::operationsFile)
        .checkNonEmptyString(pathString, "pathString", 1163);
    const std::string_view path = pathString.view();
    return MarlFilePath::filePathForPathString(path.substr(0, path.empty() ? 0 : path.size() - 1));
}

} // namespace quen
