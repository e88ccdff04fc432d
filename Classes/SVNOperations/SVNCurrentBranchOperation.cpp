#include "Classes/SVNOperations/SVNCurrentBranchOperation.h"

#include "Classes/SVNOperations/SVNArguments.h"
#include "Classes/SVNOperations/SVNReading.h"
#include "Foundation/PathComponents.h"
#include "QuenFoundation/QuenSourceControlConstants.h"

#include <utility>

namespace quen {

namespace {

StringArray commandFor(const QuenSourceControlRequest& request) {
    StringArray command{"info", "--xml"};
    const QuenSourceControlSourceTreePtr tree = request.sourceTree();
    appendPiece(command, tree == nullptr ? String() : tree->location());
    return command;
}

/// By the beginning of the text alone: `trunk-old` counts as below `trunk`.
bool isBelow(std::string_view url, const URL& location) {
    return !location.isNil() && url.starts_with(location.absoluteString().view());
}

/// What stands behind the branches location, up to the next separator; nil for nothing.
String branchNameIn(std::string_view url, const URL& branches) {
    // One character is skipped whatever it is: the separator, where the location is configured
    // without one at its end.
    const std::size_t skipped = branches.absoluteString().length() + 1;
    if (url.size() < skipped) {
        return {};
    }
    const std::string_view rest = url.substr(skipped);
    const auto components = pathComponents(rest);
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
    /// `repository` is null where it does not count.
    explicit BranchReading(const QuenSourceControlRepository* repository)
        : SVNReading({"entry"}), repository_(repository) {}

private:
    void readRecord(const XMLElement& entry, std::size_t /*container*/) override {
        const auto url = entry.onlyChild("url");
        const String name =
            url && repository_ != nullptr ? branchNameOf(url->text(), *repository_) : String();
        if (!name.isNil()) {
            records.append(Dictionary{{QuenSourceControlOperationNameKey, name}});
        }
    }

    const QuenSourceControlRepository* repository_;
};

} // namespace

bool SVNCurrentBranchOperation::initWithRequest(QuenSourceControlRequestPtr request) {
    if (!SVNOperation::initWithRequest(std::move(request))) {
        return false;
    }
    setCommand(commandFor(*this->request()));
    return true;
}

void SVNCurrentBranchOperation::parseData() {
    const QuenSourceControlRepositoryPtr repository = repositoryOf(request()->sourceTree());
    const bool isConfigured = repository != nullptr && repository->isValid();
    BranchReading reading(isConfigured ? repository.get() : nullptr);
    reading.readWhole(data());
    if (const Error malformed = reading.finish()) {
        setError(malformed);
        return;
    }
    setResult(std::move(reading.records));
}

} // namespace quen
