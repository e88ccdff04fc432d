#include "Classes/SVNController.h"

#include "Classes/SVNDiagnostics.h"
#include "Classes/SVNDispatch.h"
#include "Foundation/URL.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "QuenFoundation/QuenSourceControlErrorCode.h"

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

const RequestFacts& factsOf(const QuenSourceControlRequest& request) {
    static constexpr RequestFacts unknown;
    const RequestFacts* const facts = requestFactsOf(request.type());
    return facts == nullptr ? unknown : *facts;
}

bool sourceTreeAdmits(const QuenSourceControlRequest& request) {
    const RequestFacts& facts = factsOf(request);
    const QuenSourceControlSourceTreePtr tree = request.sourceTree();
    if (facts.isCheck) {
        return true;
    }
    return tree == nullptr ? !facts.needsSourceTree : tree->reachable();
}

} // namespace

bool SVNController::authenticationRequiredForRequest(const QuenSourceControlRequestPtr& request) {
    if (request == nullptr) {
        return false;
    }
    const std::uint8_t rules = factsOf(*request).authentication;
    const auto names = [rules](RequestAuthentication rule) { return (rules & rule) != 0; };
    // The very object: an equal text from elsewhere is a revision like any other.
    const bool isBase =
        request->startingRevision().isIdenticalTo(QuenSourceControlBASERevisionName);
    return names(AuthenticationAlways) || (names(AuthenticationUnlessBase) && !isBase) ||
           (names(AuthenticationForRemoteFile) && anyFileIsRemote(*request)) ||
           (names(AuthenticationForRemoteDestination) && destinationIsRemote(*request)) ||
           (names(AuthenticationForRevision) && !request->startingRevision().isNil());
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
        *error = sourceControlError(QuenSourceControlErrorUnreachable,
                                    formatText("The operation could not be performed because "
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
    const RequestFacts& facts = factsOf(*request);
    for (const RequestInput input : facts.checked) {
        const SVNCondition condition = conditionOf(input, request->type());
        if (condition.isNilForm) {
            assertions.checkNotNil(!hasInput(*request, input), condition.text);
        } else {
            assertions.check(hasInput(*request, input), condition.text);
        }
    }
    if (facts.isUnreachable) {
        assertions.unreachable();
    }
    const SVNOperationMaker make = operationMakerForType(request->type());
    return make == nullptr ? nullptr : make(request);
}

} // namespace quen
