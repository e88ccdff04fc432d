#include "Classes/SVNOperations/SVNOperation.h"

#include "Foundation/PathComponents.h"
#include "Foundation/PegPath.h"
#include "MarlFoundation/MarlDeveloperPaths.h"

#include <utility>

namespace quen {

namespace {

String pathOfClient() {
    const auto searchPath = MarlDeveloperPaths::defaultPaths()->binSearchPathForPlatform(0);
    return appendingPathComponent(searchPath->preferredDirectoryPath()->pathString().view(), "svn");
}

} // namespace

bool SVNOperation::initWithRequest(QuenSourceControlRequestPtr request) {
    // A host's own initialiser might take a null request for a usable one.
    if (!QuenSourceControlTaskOperation::initWithRequest(std::move(request)) ||
        this->request() == nullptr) {
        return false;
    }
    setLaunchPath(pathOfClient());
    sanitizeFilenames();
    if (Command command = makeCommand(*this->request())) {
        StringArray arguments = defaultArguments();
        arguments.insert(arguments.end(), std::make_move_iterator(command->begin()),
                         std::make_move_iterator(command->end()));
        setArguments(std::move(arguments));
    }
    return true;
}

SVNOperation::Command SVNOperation::makeCommand(const QuenSourceControlRequest& /*request*/) {
    return {};
}

void SVNOperation::sanitizeFilenames() {
    if (request() == nullptr) {
        return;
    }
    StringArray names;
    for (const String& name : request()->files().value_or(StringArray())) {
        // A nil name is a mistake of the host: the client takes none.
        if (name.isNil()) {
            continue;
        }
        names.push_back(withPegClosed(name));
    }
    request()->setFiles(std::move(names));
}

StringArray SVNOperation::defaultArguments() const {
    const QuenSourceControlRepositoryPtr repository =
        request() == nullptr ? nullptr : repositoryOf(request()->sourceTree());
    const String user = repository == nullptr ? String() : repository->user();
    return user.isEmpty() ? StringArray() : StringArray{"--username", user};
}

void SVNOperation::parseData() {
    if (request() != nullptr) {
        parseOutput(*request());
    }
}

void SVNOperation::parseOutput(const QuenSourceControlRequest& /*request*/) {
    QuenSourceControlTaskOperation::parseData();
}

QuenSourceControlRepositoryPtr repositoryOf(const QuenSourceControlSourceTreePtr& tree) {
    if (auto repository = std::dynamic_pointer_cast<QuenSourceControlRepository>(tree)) {
        return repository;
    }
    const auto workingTree = std::dynamic_pointer_cast<QuenSourceControlWorkingTree>(tree);
    return workingTree == nullptr ? nullptr : workingTree->repository();
}

void appendFiles(StringArray& command, const QuenSourceControlRequest& request) {
    if (request.files()) {
        command.insert(command.end(), request.files()->begin(), request.files()->end());
    }
}

String firstFileOf(const QuenSourceControlRequest& request) {
    return request.files() && !request.files()->empty() ? request.files()->front() : String();
}

} // namespace quen
