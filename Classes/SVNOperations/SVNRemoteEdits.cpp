#include "Classes/SVNOperations/SVNRemoteEdits.h"

#include "Classes/SVNDiagnostics.h"
#include "QuenFoundation/QuenSourceControlErrorCode.h"

#include <memory>

namespace quen {

namespace {

/// The tree itself: a working tree's repository does not count.
QuenSourceControlRepositoryPtr repositoryIn(const QuenSourceControlRequest& request) {
    return std::dynamic_pointer_cast<QuenSourceControlRepository>(request.sourceTree());
}

} // namespace

String branchesURLOf(const QuenSourceControlRequest& request) {
    const auto repository = repositoryIn(request);
    return repository == nullptr ? String() : repository->branchesLocation().absoluteString();
}

String trunkURLOf(const QuenSourceControlRequest& request) {
    const auto repository = repositoryIn(request);
    return repository == nullptr ? String() : repository->trunkLocation().absoluteString();
}

String destinationBelowBranches(const QuenSourceControlRequest& request) {
    const String branches = branchesURLOf(request);
    const String name = request.destination();
    // Without a name the URL would be that of the folder, and a removal would take every branch.
    if (branches.isNil() || name.isNil()) {
        return {};
    }
    return branches.str() + "/" + name.str();
}

Error missingLocationsError(const QuenSourceControlRequest& request) {
    const QuenSourceControlSourceTreePtr tree = request.sourceTree();
    return sourceControlError(
        QuenSourceControlErrorLayoutMissing,
        formatText("The operation could not be performed because the repository \"%@\" has "
                   "not been configured with the required trunk, branches, or tags "
                   "information.",
                   {tree == nullptr ? String() : tree->name()}));
}

} // namespace quen
