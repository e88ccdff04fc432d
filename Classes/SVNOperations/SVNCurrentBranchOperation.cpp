#include "Classes/SVNOperations/SVNCurrentBranchOperation.h"

#include "Classes/SVNOperations/SVNArguments.h"
#include "Classes/SVNOperations/SVNCharacters.h"
#include "Foundation/PathComponents.h"
#include "QuenFoundation/QuenSourceControlConstants.h"

#include <utility>

namespace quen {

namespace {

/// By the beginning of the text alone: `trunk-old` counts as below `trunk`.
bool isBelow(std::string_view url, const URL& location) {
    return !location.isNil() && url.starts_with(location.absoluteString().view());
}

/// What stands behind the branches location, up to the next separator; nil for nothing.
String branchNameIn(std::string_view url, const URL& branches) {
    url.remove_prefix(branches.absoluteString().length());
    // One character is skipped whatever it is: the separator, where the location is configured
    // without one at its end.
    url.remove_prefix(firstCharacterOf(url).size());
    const auto components = pathComponents(url);
    return components.empty() ? String() : String(components.front());
}

/// nil where the URL lies on no branch. What matches both is the trunk.
String branchNameOf(std::string_view url, const QuenSourceControlRepository& repository) {
    if (isBelow(url, repository.trunkLocation())) {
        return QuenSourceControlTrunkBranchName;
    }
    const URL branches = repository.branchesLocation();
    return isBelow(url, branches) ? branchNameIn(url, branches) : String();
}

class BranchReading : public SVNReading {
public:
    explicit BranchReading(const QuenSourceControlRepositoryPtr& repository)
        : SVNReading({"entry"}),
          repository_(repository != nullptr && repository->isValid() ? repository : nullptr) {}

private:
    void readRecord(const XMLElement& entry, std::size_t /*container*/) override {
        const auto url = entry.onlyChild("url");
        const String name =
            url && repository_ != nullptr ? branchNameOf(url->text(), *repository_) : String();
        if (!name.isNil()) {
            records.append(Dictionary{{QuenSourceControlOperationNameKey, name}});
        }
    }

    /// Null where it does not count.
    const QuenSourceControlRepositoryPtr repository_;
};

} // namespace

SVNOperation::Command
SVNCurrentBranchOperation::makeCommand(const QuenSourceControlRequest& request) {
    const QuenSourceControlSourceTreePtr tree = request.sourceTree();
    StringArray command{"info", "--xml"};
    appendPiece(command, tree == nullptr ? String() : tree->location());
    return command;
}

std::unique_ptr<SVNReading>
SVNCurrentBranchOperation::makeReading(const QuenSourceControlRequest& request) {
    return std::make_unique<BranchReading>(repositoryOf(request.sourceTree()));
}

} // namespace quen
