#include "Foundation/PercentCoding.h"
#include "Host/Places/BranchNames.h"
#include "Host/Places/Locations.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Server/Methods/ChangeJson.h"
#include "Tools/Server/Methods/Params.h"
#include "Tools/Server/Methods/WorkingCopyJson.h"

#include <filesystem>
#include <utility>

namespace quen::tools::server {

namespace {

/// An open working copy with the layout of its repository.
struct Project {
    WorkingCopyFacts facts;
    RepositoryLayout layout;
};

/// nullopt where the client failed; `ran` says how.
std::optional<Project> findProject(const Services& services, const Call& call,
                                   const std::string& root, Ran& ran) {
    const WorkingCopies::Opened opened = services.copies.open(root, optionsOf(call));
    if (opened.copy == nullptr) {
        ran = opened.ran;
        return std::nullopt;
    }
    const WorkingCopyFacts facts = opened.copy->facts();
    return Project{facts, layoutOf(root, facts.url, facts.repositoryRoot)};
}

OrderedJson outcomeJson(OrderedJson json, const Ran& ran) {
    addOutcome(json, ran);
    return json;
}

struct RootParams {
    std::string root;
};

RootParams decodeRoot(const JsonInput& params) {
    params.requireObject({"workingCopy"});
    return {readWorkingCopy(params)};
}

std::string lastPartOf(const std::string& url) {
    return percentDecoded(std::filesystem::path(url).filename().string());
}

OrderedJson branchesJson(const Project& project, const Ran& ran) {
    OrderedJson branches = OrderedJson::array();
    branches.push_back({{"name", toJson(String(lastPartOf(project.layout.trunk)))},
                        {"isTrunk", true},
                        {"url", toJson(String(project.layout.trunk))}});
    const Array* const records =
        ran.operation == nullptr ? nullptr : ran.operation->result().array();
    const Array list = records == nullptr ? Array() : *records;
    for (const Value& record : list) {
        const String name = (*record.dictionary())[QuenSourceControlOperationNameKey].stringValue();
        branches.push_back(
            {{"name", toJson(name)},
             {"isTrunk", false},
             {"url", toJson(String(project.layout.branches + "/" + encodedName(name.view())))}});
    }
    return branches;
}

OrderedJson list(const Services& services, const Call& call, const RootParams& params) {
    Ran ran;
    const auto project = findProject(services, call, params.root, ran);
    if (!project) {
        return outcomeJson({{"branches", OrderedJson::array()}}, ran);
    }
    ran = services.runs.perform(
        makeRequest(RequestTypeListBranches,
                    placeWithLayout({}, project->facts.repositoryRoot, project->layout)),
        optionsOf(call));
    return outcomeJson({{"branches", branchesJson(*project, ran)}}, ran);
}

OrderedJson current(const Services& services, const Call& call, const RootParams& params) {
    services.copies.open(params.root, optionsOf(call));
    const Ran ran = services.copies.readAgain(params.root, optionsOf(call));
    const WorkingCopyPtr copy = services.copies.find(params.root);
    OrderedJson branch;
    if (copy != nullptr && ran.isWell()) {
        branch = workingCopyJson(*copy)["branch"];
    }
    return outcomeJson({{"branch", std::move(branch)}}, ran);
}

/// Makes or takes away a branch, or a tag, which is a branch in another folder.
struct EditParams {
    RequestType type = RequestTypeRemoteCopy;
    bool isTag = false;
    std::string root;
    std::string name;
    std::string url;
    std::string from;
    std::string message;
};

EditParams decodeEdit(const JsonInput& params, RequestType type, bool isTag) {
    EditParams edit{type, isTag, {}, {}, {}, {}, {}};
    if (type == RequestTypeRemoteCopy) {
        params.requireObject({"workingCopy", "name", "message", "from"});
        edit.from = params.has("from") ? readURL(params.member("from")) : std::string();
    } else {
        params.requireObject({"workingCopy", "name", "url", "message"});
        edit.url = params.has("url") ? readURL(params.member("url")) : std::string();
    }
    edit.root = readWorkingCopy(params);
    edit.message = params.member("message").string();
    if (edit.url.empty()) {
        edit.name = params.member("name").string();
        if (!isBranchName(edit.name)) {
            params.member("name").fail("expected a name without empty parts, \".\" and \"..\"");
        }
    }
    return edit;
}

/// The folder that the name lies in, below it as the client takes it.
std::string nameInFolder(const EditParams& params, const std::string& folder) {
    if (params.url.empty()) {
        return branchNameInURL(params.name).str();
    }
    if (!isBelow(withoutSlashesAtEnd(params.url), folder)) {
        throw InputError("params.url: expected a URL below " + folder);
    }
    return closedClientPath(params.url).str().substr(folder.size() + 1);
}

OrderedJson edit(const Services& services, Call& call, const EditParams& params) {
    Ran ran;
    auto project = findProject(services, call, params.root, ran);
    if (!project) {
        return outcomeJson({{"revision", nullptr}, {"url", nullptr}}, ran);
    }
    if (params.isTag) {
        project->layout.branches = tagsBeside(project->layout.branches);
    }
    const std::string name = nameInFolder(params, project->layout.branches);
    Dictionary options{
        {QuenSourceControlRequestOptionMessage, messageFor(services, params.message)}};
    if (params.type == RequestTypeRemoteCopy) {
        const std::string from = params.from.empty() ? project->facts.url : params.from;
        options.set(QuenSourceControlRequestOptionSourceLocation, closedClientPath(from));
    }
    const auto request = makeRequest(
        params.type, placeWithLayout({}, project->facts.repositoryRoot, project->layout), {},
        options);
    request->setDestination(name);
    ChangeFactsReader reader;
    RunOptions watched = optionsOf(call);
    watched.watcher = [&](std::string_view piece) { reader.take(piece); };
    ran = services.runs.perform(request, watched);
    const std::string plainName = params.url.empty() ? encodedName(params.name) : name;
    return outcomeJson(
        {{"revision", numberJson(reader.facts().revision)},
         {"url", toJson(String(params.url.empty() ? project->layout.branches + "/" + plainName
                                                  : params.url))}},
        ran);
}

void addEdit(Server& server, const Services& services, const char* method, RequestType type,
             bool isTag) {
    server.dispatcher().add(query<EditParams>(
        method, [type, isTag](const JsonInput& params) { return decodeEdit(params, type, isTag); },
        [services](Call& call, const EditParams& params) { return edit(services, call, params); }));
}

} // namespace

void addBranchMethods(Server& server, const Services& services) {
    server.dispatcher().add(query<RootParams>(
        "branch/list", decodeRoot, [services](const Call& call, const RootParams& params) {
            return list(services, call, params);
        }));
    server.dispatcher().add(query<RootParams>(
        "branch/current", decodeRoot, [services](const Call& call, const RootParams& params) {
            return current(services, call, params);
        }));
    addEdit(server, services, "branch/create", RequestTypeRemoteCopy, false);
    addEdit(server, services, "branch/delete", RequestTypeRemoteRemove, false);
    addEdit(server, services, "tag/create", RequestTypeRemoteCopy, true);
    addEdit(server, services, "tag/delete", RequestTypeRemoteRemove, true);
}

} // namespace quen::tools::server
