#include "Tools/Console/RequestDecoder.h"

#include "Host/HostSourceTrees.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "QuenFoundation/QuenSourceControlRequestFacts.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>

namespace quen::tools {

namespace {

String optionalString(const JsonInput& object, std::string_view name) {
    return object.has(name) ? object.member(name).stringOrNil() : String();
}

bool optionalBoolean(const JsonInput& object, std::string_view name, bool otherwise) {
    return object.has(name) ? object.member(name).boolean() : otherwise;
}

URL optionalURL(const JsonInput& object, std::string_view name) {
    const String text = optionalString(object, name);
    URL url = URL::fromString(text);
    if (url.isNil() && !text.isNil()) {
        object.member(name).fail("expected a URL");
    }
    return url;
}

template <typename Facts> void decodeCommonFacts(const JsonInput& tree, Facts& facts) {
    facts.name = optionalString(tree, "name");
    facts.location = optionalString(tree, "location");
    facts.reachable = optionalBoolean(tree, "reachable", true);
    facts.isValid = optionalBoolean(tree, "isValid", true);
    if (tree.has("contains") && !tree.member("contains").isNull()) {
        facts.contains = tree.member("contains").strings();
    }
}

QuenSourceControlRepositoryPtr decodeRepository(const JsonInput& tree) {
    tree.requireObject({"kind", "name", "location", "reachable", "isValid", "contains", "user",
                        "trunkLocation", "branchesLocation"});
    HostRepository::Facts facts;
    decodeCommonFacts(tree, facts);
    facts.user = optionalString(tree, "user");
    facts.trunkLocation = optionalURL(tree, "trunkLocation");
    facts.branchesLocation = optionalURL(tree, "branchesLocation");
    return std::make_shared<HostRepository>(facts);
}

/// A member that holds a repository, or null.
QuenSourceControlRepositoryPtr optionalRepository(const JsonInput& object, std::string_view name) {
    if (!object.has(name) || object.member(name).isNull()) {
        return nullptr;
    }
    const JsonInput tree = object.member(name);
    tree.members(); // an object, before its kind is asked for
    if (tree.member("kind").string() != "repository") {
        tree.member("kind").fail("expected \"repository\"");
    }
    return decodeRepository(tree);
}

QuenSourceControlSourceTreePtr decodeWorkingTree(const JsonInput& tree) {
    tree.requireObject(
        {"kind", "name", "location", "reachable", "isValid", "contains", "repository"});
    HostWorkingTree::Facts facts;
    decodeCommonFacts(tree, facts);
    facts.repository = optionalRepository(tree, "repository");
    return std::make_shared<HostWorkingTree>(facts);
}

QuenSourceControlSourceTreePtr decodeOtherTree(const JsonInput& tree) {
    tree.requireObject({"kind", "name", "location", "reachable", "isValid", "contains"});
    HostOtherTree::Facts facts;
    decodeCommonFacts(tree, facts);
    return std::make_shared<HostOtherTree>(facts);
}

QuenSourceControlSourceTreePtr optionalSourceTree(const JsonInput& request) {
    if (!request.has("sourceTree") || request.member("sourceTree").isNull()) {
        return nullptr;
    }
    const JsonInput tree = request.member("sourceTree");
    tree.members(); // an object, before its kind is asked for
    const std::string kind = tree.member("kind").string();
    if (kind == "repository") {
        return decodeRepository(tree);
    }
    if (kind == "workingTree") {
        return decodeWorkingTree(tree);
    }
    if (kind == "other") {
        return decodeOtherTree(tree);
    }
    tree.member("kind").fail("expected \"repository\", \"workingTree\" or \"other\"");
}

/// The revision-name constant that an object names, as the very object or as another one of the
/// same text.
String decodeRevisionName(const JsonInput& revision) {
    const auto [name, value] = revision.members().size() == 1
                                   ? revision.members().front()
                                   : std::pair<std::string, JsonInput>("", revision);
    if (name != "constant" && name != "copyOf") {
        revision.fail("expected one member, \"constant\" or \"copyOf\"");
    }
    for (const auto& [constantName, constant] :
         {std::pair("QuenSourceControlBASERevisionName", QuenSourceControlBASERevisionName),
          std::pair("QuenSourceControlHEADRevisionName", QuenSourceControlHEADRevisionName)}) {
        if (value.string() == constantName) {
            return name == "constant" ? constant : String(constant.view());
        }
    }
    value.fail("expected \"QuenSourceControlBASERevisionName\" or "
               "\"QuenSourceControlHEADRevisionName\"");
}

String optionalRevision(const JsonInput& request, std::string_view name) {
    if (!request.has(name)) {
        return {};
    }
    const JsonInput revision = request.member(name);
    if (revision.isNull() || revision.isString()) {
        return revision.stringOrNil();
    }
    if (!revision.json().is_object()) {
        revision.fail("expected a string, an object or null");
    }
    return decodeRevisionName(revision);
}

Value decodeOptionValue(const JsonInput& value) {
    if (value.isString()) {
        return String(value.string());
    }
    if (value.json().is_boolean()) {
        return value.boolean();
    }
    if (value.json().is_number_integer()) {
        return value.integer(INT64_MIN, INT64_MAX);
    }
    value.fail("expected a string, an integer, true, false or null");
}

Dictionary optionalOptions(const JsonInput& request) {
    static const std::array keys{QuenSourceControlRequestOptionMessage,
                                 QuenSourceControlRequestOptionSourceLocation,
                                 QuenSourceControlRequestOptionAllowEmptyCommit,
                                 QuenSourceControlRequestOptionIgnoreItem,
                                 QuenSourceControlRequestOptionLogOutputFilesChanged,
                                 QuenSourceControlRequestOptionLogOutputLimit,
                                 QuenSourceControlRequestOptionLogStopOnBranching,
                                 QuenSourceControlRequestOptionSupplyDirectRevision};
    if (!request.has("options") || request.member("options").isNull()) {
        return {};
    }
    Dictionary options = Dictionary::empty();
    for (const auto& [name, value] : request.member("options").members()) {
        const auto* const key = std::find(keys.begin(), keys.end(), String(name));
        if (key == keys.end()) {
            value.fail("unknown member");
        }
        if (!value.isNull()) {
            options.set(*key, decodeOptionValue(value));
        }
    }
    return options;
}

std::int32_t decodeType(const JsonInput& type) {
    if (!type.isString()) {
        return static_cast<std::int32_t>(type.integer(INT32_MIN, INT32_MAX));
    }
    const auto number = requestTypeNamed(type.string());
    if (!number) {
        type.fail("unknown request type \"" + type.string() + "\"");
    }
    return *number;
}

} // namespace

QuenSourceControlRequestPtr decodeRequest(const JsonInput& input) {
    input.requireObject({"type", "sourceTree", "destination", "files", "options",
                         "startingRevision", "endingRevision", "repositoryToAuthenticate"});
    auto request = std::make_shared<QuenSourceControlRequest>();
    request->setType(decodeType(input.member("type")));
    request->setSourceTree(optionalSourceTree(input));
    request->setDestination(optionalString(input, "destination"));
    if (input.has("files") && !input.member("files").isNull()) {
        request->setFiles(input.member("files").strings());
    }
    request->setOptions(optionalOptions(input));
    request->setStartingRevision(optionalRevision(input, "startingRevision"));
    request->setEndingRevision(optionalRevision(input, "endingRevision"));
    request->setRepositoryToAuthenticate(optionalRepository(input, "repositoryToAuthenticate"));
    return request;
}

} // namespace quen::tools
