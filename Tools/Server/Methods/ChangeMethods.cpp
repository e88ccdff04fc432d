#include "Host/ClientCommand.h"
#include "Host/Plans/Plans.h"
#include "Host/WorkingCopyCleanup.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Server/Methods/ChangeJson.h"
#include "Tools/Server/Methods/Params.h"
#include "Tools/Server/Methods/WorkingCopyJson.h"

#include <utility>

namespace quen::tools::server {

namespace {

OrderedJson changeJson(const std::string& root, const ChangeFacts& facts, const Ran& ran) {
    OrderedJson json{{"items", itemsJson(facts, root)}};
    addOutcome(json, ran);
    return json;
}

struct CommitParams {
    std::string root;
    std::vector<std::string> paths;
    std::string message;
    bool alsoTaken = false;
};

CommitParams decodeCommit(const JsonInput& params) {
    params.requireObject({"paths", "message", "alsoTaken"});
    CommitParams commit{
        {}, readPaths(params), params.member("message").string(), readFlag(params, "alsoTaken")};
    commit.root = rootOf(params, commit.paths);
    return commit;
}

/// A directory takes along what changed below it, whether or not it was named.
void refuseMoreThanNamed(const std::vector<String>& alsoTaken) {
    if (alsoTaken.empty()) {
        return;
    }
    OrderedJson paths = OrderedJson::array();
    for (const String& path : alsoTaken) {
        paths.push_back(toJson(path));
    }
    const std::size_t more = alsoTaken.size() - 1;
    throw ProtocolError(InvalidParams,
                        "params.paths: the commit would also take " + alsoTaken.front().str() +
                            (more == 0 ? "" : " and " + std::to_string(more) + " more") +
                            "; give \"alsoTaken\": true where that is meant",
                        OrderedJson{{"alsoTaken", std::move(paths)}});
}

OrderedJson commitJson(const CommitParams& params, const ChangeFacts& facts, const Ran& ran) {
    OrderedJson json{{"revision", numberJson(facts.revision)},
                     {"items", itemsJson(facts, params.root)}};
    addOutcome(json, ran);
    return json;
}

OrderedJson commit(const Services& services, Call& call, const CommitParams& params) {
    if (!params.alsoTaken) {
        CommitPlan plan;
        const Ran planned = services.runs.query(
            [&](const QueryRunner& run) {
                plan = planCommit({params.paths.begin(), params.paths.end()}, run);
                return plan.error;
            },
            optionsOf(call));
        if (!planned.isWell()) {
            return commitJson(params, {}, planned);
        }
        refuseMoreThanNamed(plan.alsoTaken);
    }
    const auto request = makeRequest(
        RequestTypeCommit, placeOf(params.root), params.paths,
        {{QuenSourceControlRequestOptionMessage, messageFor(services, params.message)}});
    ChangeFacts facts;
    const Ran ran = runChange(
        services, call, {"Committing", params.root, params.paths, ChangeColumns::transfer, true},
        facts, [&](const RunOptions& options) { return services.runs.perform(request, options); });
    return commitJson(params, facts, ran);
}

struct PathsParams {
    std::string root;
    std::vector<std::string> paths;
};

PathsParams decodePaths(const JsonInput& params) {
    params.requireObject({"paths"});
    PathsParams change{{}, readPaths(params)};
    change.root = rootOf(params, change.paths);
    return change;
}

/// A change that the provider makes of a list of paths.
void addPathsMethod(Server& server, const Services& services, const char* name, const char* title,
                    RequestType type) {
    server.dispatcher().add(change<PathsParams>(
        name, decodePaths, [services, title, type](Call& call, const PathsParams& params) {
            ChangeFacts facts;
            const auto request = makeRequest(type, placeOf(params.root), params.paths);
            const Ran ran = runChange(
                services, call, {title, params.root, params.paths, changeColumnsOf(type)}, facts,
                [&](const RunOptions& options) { return services.runs.perform(request, options); });
            return changeJson(params.root, facts, ran);
        }));
}

struct ResolveParams {
    std::string root;
    std::vector<std::string> paths;
    /// As the client takes it.
    std::string accept;
};

ResolveParams decodeResolve(const JsonInput& params) {
    params.requireObject({"paths", "accept"});
    ResolveParams resolve{{}, readPaths(params), {}};
    resolve.root = rootOf(params, resolve.paths);
    const std::string word = params.member("accept").string();
    if (word == "working" || word == "base") {
        resolve.accept = word;
    } else if (word == "mine" || word == "theirs") {
        resolve.accept = word + "-full";
    } else {
        params.member("accept").fail("expected \"working\", \"mine\", \"theirs\" or \"base\"");
    }
    return resolve;
}

OrderedJson resolve(const Services& services, Call& call, const ResolveParams& params) {
    ChangeFacts facts;
    const Ran ran = runChange(
        services, call,
        {"Resolving", params.root, params.paths, changeColumnsOf(RequestTypeResolve)}, facts,
        [&](const RunOptions& options) {
            if (params.accept == "working") {
                return services.runs.perform(
                    makeRequest(RequestTypeResolve, placeOf(params.root), params.paths), options);
            }
            return services.runs.run(
                [&] {
                    return ClientCommand::make({"resolve", "--accept", params.accept}, params.paths,
                                               RequestTypeResolve);
                },
                options);
        });
    return changeJson(params.root, facts, ran);
}

OrderedJson cleanup(const Services& services, Call& call, const PathsParams& params) {
    ChangeFacts facts;
    const Ran ran = runChange(
        services, call, {"Cleaning up", params.root, {}}, facts, [&](const RunOptions& options) {
            return services.runs.run([&] { return WorkingCopyCleanup::make(params.root); },
                                     options);
        });
    OrderedJson items = OrderedJson::array();
    if (ran.isWell()) {
        items.push_back({{"path", toJson(String(params.root))}, {"action", "cleaned"}});
    }
    OrderedJson json{{"items", std::move(items)}};
    addOutcome(json, ran);
    return json;
}

} // namespace

void addChangeMethods(Server& server, const Services& services) {
    Dispatcher& methods = server.dispatcher();
    methods.add(change<CommitParams>("change/commit", decodeCommit,
                                     [services](Call& call, const CommitParams& params) {
                                         return commit(services, call, params);
                                     }));
    addPathsMethod(server, services, "change/add", "Adding", RequestTypeAdd);
    methods.add(change<ResolveParams>("change/resolve", decodeResolve,
                                      [services](Call& call, const ResolveParams& params) {
                                          return resolve(services, call, params);
                                      }));
    methods.add(change<PathsParams>("workingCopy/cleanup", decodePaths,
                                    [services](Call& call, const PathsParams& params) {
                                        return cleanup(services, call, params);
                                    }));
}

} // namespace quen::tools::server
