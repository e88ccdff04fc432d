#include "Classes/SVNOperations/SVNPropertyEdits.h"

#include "Classes/SVNOperations/SVNArguments.h"

#include <string>
#include <utility>

namespace quen {

namespace {

bool editsIgnoreList(const QuenSourceControlRequest& request) {
    return request.type() == RequestTypeIgnore || request.type() == RequestTypeUnignore;
}

String joinedByLineFeeds(const StringArray& names) {
    std::string text;
    for (const String& name : names) {
        text += &name == &names.front() ? "" : "\n";
        text += name.view();
    }
    return text;
}

StringArray setCommandFor(const QuenSourceControlRequest& request) {
    StringArray command{"propset", "svn:ignore"};
    command.push_back(joinedByLineFeeds(request.files().value_or(StringArray())));
    appendPiece(command, request.destination());
    return command;
}

/// The directory is worked out from the file: the query whose request this is has no destination.
StringArray deleteCommandFor(const QuenSourceControlRequest& request) {
    StringArray command{"propdel", "svn:ignore"};
    appendPiece(command, parentOfFirstFile(request));
    return command;
}

} // namespace

bool SVNPropSetOperation::initWithRequest(QuenSourceControlRequestPtr request) {
    if (!SVNOperation::initWithRequest(std::move(request))) {
        return false;
    }
    if (editsIgnoreList(*this->request())) {
        setCommand(setCommandFor(*this->request()));
    }
    return true;
}

bool SVNPropDelOperation::initWithRequest(QuenSourceControlRequestPtr request) {
    if (!SVNOperation::initWithRequest(std::move(request))) {
        return false;
    }
    if (editsIgnoreList(*this->request())) {
        setCommand(deleteCommandFor(*this->request()));
    }
    return true;
}

} // namespace quen
