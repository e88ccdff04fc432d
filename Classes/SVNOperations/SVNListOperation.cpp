#include "Classes/SVNOperations/SVNListOperation.h"

#include "Classes/SVNDiagnostics.h"
#include "Classes/SVNOperations/SVNArguments.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "QuenFoundation/QuenSourceControlErrorCode.h"

#include <utility>

namespace quen {

namespace {

/// What to look into; nil where that is not known.
String locationFor(const QuenSourceControlRequest& request) {
    if (request.type() != RequestTypeListBranches) {
        return firstFileOf(request);
    }
    const QuenSourceControlRepositoryPtr repository = repositoryOf(request.sourceTree());
    return repository == nullptr ? String() : repository->branchesLocation().absoluteString();
}

Error branchesNotLocated() {
    return sourceControlError(
        QuenSourceControlErrorBranchesNotFound,
        "The operation could not be performed because the repository's branches could not be "
        "located.",
        {{NSLocalizedRecoverySuggestionErrorKey,
          "Check that the local repository is configured properly and try again."}});
}

class ListReading : public SVNReading {
public:
    ListReading() : SVNReading({"list", "entry"}) {}

private:
    /// Only what the first list holds counts.
    void readRecord(const XMLElement& entry, std::size_t list) override {
        if (list > 0) {
            return;
        }
        Dictionary record = Dictionary::withCapacity(2);
        record.set(QuenSourceControlOperationIsLeafKey, entry.attribute("kind") != "dir");
        if (const auto name = entry.onlyChild("name")) {
            record.set(QuenSourceControlOperationNameKey, String(name->text()));
        }
        records.append(std::move(record));
    }
};

} // namespace

SVNOperation::Command SVNListOperation::makeCommand(const QuenSourceControlRequest& request) {
    const String location = locationFor(request);
    if (request.type() == RequestTypeListBranches && location.isNil()) {
        setError(branchesNotLocated());
        if (isLogged(levelOfDescriptions)) {
            // The description is the format: the line in the log is the description to the letter.
            logAtLevel(levelOfDescriptions, error().description().view(), {});
        }
    }
    StringArray command{"list", "--xml"};
    appendPiece(command, location);
    return command;
}

std::unique_ptr<SVNReading>
SVNListOperation::makeReading(const QuenSourceControlRequest& /*request*/) {
    return std::make_unique<ListReading>();
}

} // namespace quen
