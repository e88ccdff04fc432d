#include "Tools/Console/RequestEncoder.h"

#include "QuenFoundation/QuenSourceControlConstants.h"
#include "QuenFoundation/QuenSourceControlRequestFacts.h"

#include <nlohmann/json.hpp>
#include <string>

namespace quen::tools {

namespace {

void addText(OrderedJson& object, const char* name, const String& text) {
    if (!text.isNil()) {
        object[name] = toJson(text);
    }
}

/// The constants are what they are by being the very object, so they have a form of their own.
void addRevision(OrderedJson& object, const char* name, const String& revision) {
    for (const String& constant :
         {QuenSourceControlBASERevisionName, QuenSourceControlHEADRevisionName}) {
        if (revision.isIdenticalTo(constant)) {
            const bool isBase = constant.isIdenticalTo(QuenSourceControlBASERevisionName);
            object[name] = {{"constant", isBase ? "QuenSourceControlBASERevisionName"
                                                : "QuenSourceControlHEADRevisionName"}};
            return;
        }
    }
    addText(object, name, revision);
}

void addRepositoryFacts(OrderedJson& object, const QuenSourceControlRepository& repository) {
    addText(object, "user", repository.user());
    addText(object, "trunkLocation", repository.trunkLocation().absoluteString());
    addText(object, "branchesLocation", repository.branchesLocation().absoluteString());
}

OrderedJson encodeTree(const QuenSourceControlSourceTree& tree) {
    const auto* const repository = dynamic_cast<const QuenSourceControlRepository*>(&tree);
    const auto* const workingTree = dynamic_cast<const QuenSourceControlWorkingTree*>(&tree);
    OrderedJson object = OrderedJson::object();
    object["kind"] = repository != nullptr    ? "repository"
                     : workingTree != nullptr ? "workingTree"
                                              : "other";
    addText(object, "name", tree.name());
    addText(object, "location", tree.location());
    if (!tree.reachable()) {
        object["reachable"] = false;
    }
    if (!tree.isValid()) {
        object["isValid"] = false;
    }
    if (repository != nullptr) {
        addRepositoryFacts(object, *repository);
    } else if (workingTree != nullptr && workingTree->repository() != nullptr) {
        object["repository"] = encodeTree(*workingTree->repository());
    }
    return object;
}

OrderedJson encodeOptions(const Dictionary& options) {
    OrderedJson object = OrderedJson::object();
    for (const auto& option : options) {
        object[option.key.str()] = toJson(option.value);
    }
    return object;
}

} // namespace

OrderedJson encodeRequest(const QuenSourceControlRequest& request) {
    OrderedJson object = OrderedJson::object();
    const std::string_view name = nameOfRequestType(request.type());
    if (name.empty()) {
        object["type"] = request.type();
    } else {
        object["type"] = name;
    }
    if (request.sourceTree() != nullptr) {
        object["sourceTree"] = encodeTree(*request.sourceTree());
    }
    addText(object, "destination", request.destination());
    if (request.files()) {
        object["files"] = toJson(request.files());
    }
    if (request.options().count() > 0) {
        object["options"] = encodeOptions(request.options());
    }
    addRevision(object, "startingRevision", request.startingRevision());
    addRevision(object, "endingRevision", request.endingRevision());
    if (request.repositoryToAuthenticate() != nullptr) {
        object["repositoryToAuthenticate"] = encodeTree(*request.repositoryToAuthenticate());
    }
    return object;
}

std::string requestText(const QuenSourceControlRequest& request) {
    return encodeRequest(request).dump();
}

} // namespace quen::tools
