#include "Classes/SVNController.h"

#include "Classes/SVNDiagnostics.h"
#include "Classes/SVNDispatch.h"
#include "Foundation/URL.h"
#include "QuenFoundation/QuenSourceControlConstants.h"

#include <algorithm>

namespace quen {

namespace {

/// A plain path, a file URL, and a text that no URL can be made from are local.
bool isRemote(const String& location) {
    const URL url = URL::fromString(location);
    return !url.scheme().isNil() && !url.isFileURL();
}

bool anyFileIsRemote(const QuenSourceControlRequest& request) {
    return request.files() &&
           std::any_of(request.files()->begin(), request.files()->end(), isRemote);
}

bool destinationIsRemote(const QuenSourceControlRequest& request) {
    return !request.destination().isNil() && isRemote(request.destination());
}

bool isReachable(const QuenSourceControlSourceTreePtr& tree) {
    return tree != nullptr && tree->reachable();
}

/// Types that have nothing to work on without a repository.
bool needsSourceTree(std::int32_t type) {
    switch (type) {
    case RequestTypeList:
    case RequestTypeLog:
    case RequestTypeCheckout:
    case RequestTypeExportFile:
    case RequestTypeImport:
    case RequestTypeListBranches:
    case RequestTypeRemoteStatus:
    case RequestTypeBlame: return true;
    default: return false;
    }
}

/// Checks look at local data only: whether the source tree can be reached does not count.
bool isCheck(std::int32_t type) {
    return type == RequestTypeInfoCheck || type == RequestTypeInfoCheckAlternate;
}

bool sourceTreeAdmits(const QuenSourceControlRequest& request) {
    if (isCheck(request.type())) {
        return true;
    }
    const QuenSourceControlSourceTreePtr tree = request.sourceTree();
    return tree == nullptr ? !needsSourceTree(request.type()) : tree->reachable();
}

} // namespace

bool SVNController::authenticationRequiredForRequest(const QuenSourceControlRequestPtr& request) {
    if (request == nullptr) {
        return false;
    }
    switch (request->type()) {
    case RequestTypeCheckout:
    case RequestTypeCommit:
    case RequestTypeImport:
    case RequestTypeList:
    case RequestTypeListBranches:
    case RequestTypeLog:
    case RequestTypeRemoteStatus:
    case RequestTypeSwitch:
    case RequestTypeUpdate:
    case RequestTypeBlame: return true;
    case RequestTypeExportFile:
        // The very object: an equal text from elsewhere is a revision like any other.
        return !request->startingRevision().isIdenticalTo(QuenSourceControlBASERevisionName);
    case RequestTypeInfo:
    case RequestTypeRemove:
    case RequestTypeIgnore:
    case RequestTypeUnignore: return anyFileIsRemote(*request);
    case RequestTypeCopy:
        return anyFileIsRemote(*request) || destinationIsRemote(*request) ||
               !request->startingRevision().isNil();
    case RequestTypeMove: return anyFileIsRemote(*request) || destinationIsRemote(*request);
    case RequestTypeMakeDirectory:
    case RequestTypeMerge: return destinationIsRemote(*request);
    default: return false;
    }
}

bool SVNController::validateRequest(const QuenSourceControlRequestPtr& request, Error* error) {
    const QuenSourceControlSourceTreePtr tree =
        request == nullptr ? nullptr : request->sourceTree();
    bool valid = request != nullptr && sourceTreeAdmits(*request);
    if (authenticationRequiredForRequest(request)) {
        valid = valid && isReachable(tree) && isReachable(request->repositoryToAuthenticate());
    }
    // Filled whatever the answer, and always about the source tree, also where the repository to
    // authenticate was the one that could not be reached.
    if (error != nullptr) {
        *error = sourceControlError(-20, formatText("The operation could not be performed because "
                                                    "the repository \"%@\" could not be reached.",
                                                    {tree == nullptr ? String() : tree->name()}));
    }
    return valid;
}

QuenSourceControlOperationPtr
SVNController::operationForRequest(const QuenSourceControlRequestPtr& request) {
    if (request == nullptr) {
        return nullptr;
    }
    const SVNAssertions assertions(this, "-[SVNController operationForRequest:]",
                                   SVNAssertions::controllerFile);
    const SVNDispatchRow& row = dispatchRowForType(request->type());
    for (const SVNPrecondition& precondition : row.preconditions) {
        if (precondition.isNilForm) {
            assertions.checkNotNil(!precondition.holds(*request), precondition.text);
        } else {
            assertions.check(precondition.holds(*request), precondition.text);
        }
    }
    if (row.isUnreachable) {
        assertions.unreachable();
    }
    return row.make == nullptr ? nullptr : row.make(request);
}

} // namespace quen
