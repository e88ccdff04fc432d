#include "Classes/SVNOperations/SVNArguments.h"

#include "Classes/SVNOperations/SVNOperation.h"
#include "Foundation/PathComponents.h"
#include "QuenFoundation/QuenSourceControlConstants.h"

namespace quen {

std::size_t fileCountOf(const QuenSourceControlRequest& request) {
    return request.files() ? request.files()->size() : 0;
}

String optionText(const QuenSourceControlRequest& request, const String& key) {
    return request.options()[key].stringValue();
}

void appendPiece(StringArray& command, const String& piece) {
    if (!piece.isNil()) {
        command.push_back(piece);
    }
}

void appendMessageIfGiven(StringArray& command, const QuenSourceControlRequest& request) {
    if (!optionText(request, QuenSourceControlRequestOptionMessage).isNil()) {
        appendRequiredMessage(command, request);
    }
}

void appendRequiredMessage(StringArray& command, const QuenSourceControlRequest& request) {
    command.emplace_back("-m");
    appendPiece(command, optionText(request, QuenSourceControlRequestOptionMessage));
}

String parentOfFirstFile(const QuenSourceControlRequest& request) {
    const String file = firstFileOf(request);
    return file.isNil() ? String() : String(deletingLastPathComponent(file.view()));
}

} // namespace quen
