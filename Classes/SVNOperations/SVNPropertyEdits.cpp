#include "Classes/SVNOperations/SVNPropertyEdits.h"

#include "Classes/SVNOperations/SVNArguments.h"

#include <string>

namespace quen {

namespace {

bool editsIgnoreList(const QuenSourceControlRequest& request) {
    return request.type() == RequestTypeIgnore || request.type() == RequestTypeUnignore;
}

/// An absent entry is a mistake of the caller's, and left out.
String joinedByLineFeeds(const StringArray& entries) {
    std::string text;
    bool isFirst = true;
    for (const String& entry : entries) {
        if (!entry.isNil()) {
            text += isFirst ? "" : "\n";
            text += entry.view();
            isFirst = false;
        }
    }
    return text;
}

} // namespace

void SVNPropSetOperation::sanitizeFilenames() {}

SVNOperation::Command SVNPropSetOperation::makeCommand(const QuenSourceControlRequest& request) {
    if (!editsIgnoreList(request)) {
        return {};
    }
    StringArray command{"propset", "svn:ignore"};
    command.push_back(joinedByLineFeeds(request.files().value_or(StringArray())));
    appendPiece(command, request.destination());
    return command;
}

SVNOperation::Command SVNPropDelOperation::makeCommand(const QuenSourceControlRequest& request) {
    if (!editsIgnoreList(request)) {
        return {};
    }
    // The directory is worked out from the file: the query whose request this is has no
    // destination.
    StringArray command{"propdel", "svn:ignore"};
    appendPiece(command, parentOfFirstFile(request));
    return command;
}

} // namespace quen
