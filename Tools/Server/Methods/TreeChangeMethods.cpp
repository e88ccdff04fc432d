#include "Host/IgnoreLists.h"
#include "Host/Places/Locations.h"
#include "Tools/Server/Methods/ChangeJson.h"
#include "Tools/Server/Methods/Params.h"

#include <filesystem>
#include <set>
#include <system_error>
#include <utility>

namespace quen::tools::server {

namespace {

namespace fs = std::filesystem;

OrderedJson changeJson(const std::string& root, const ChangeFacts& facts, const Ran& ran) {
    OrderedJson json{{"items", itemsJson(facts, root)}};
    addOutcome(json, ran);
    return json;
}

/// From one place of a working copy to another.
struct FromToParams {
    std::string root;
    std::string from;
    std::string to;
};

FromToParams decodeFromTo(const JsonInput& params) {
    params.requireObject({"from", "to"});
    FromToParams change{{}, readPath(params.member("from")), readPath(params.member("to"))};
    change.root = rootOf(params, {change.from}, "from");
    if (rootOf(params, {change.to}, "to") != change.root) {
        params.member("to").fail("lies in another working copy than \"from\"");
    }
    return change;
}

Ran runFromTo(const Services& services, Call& call, RequestType type, const char* title,
              const FromToParams& params, ChangeFacts& facts) {
    const auto request = makeRequest(type, placeOf(params.root), {params.from});
    request->setDestination(closedClientPath(params.to));
    return runChange(
        services, call, {title, params.root, {params.from, params.to}, changeColumnsOf(type)},
        facts, [&](const RunOptions& options) { return services.runs.perform(request, options); });
}

void addFromToMethod(Server& server, const Services& services, const char* name, const char* title,
                     RequestType type) {
    server.dispatcher().add(change<FromToParams>(
        name, decodeFromTo, [services, title, type](Call& call, const FromToParams& params) {
            ChangeFacts facts;
            const Ran ran = runFromTo(services, call, type, title, params, facts);
            return changeJson(params.root, facts, ran);
        }));
}

void rename(const std::string& from, const std::string& to) {
    std::error_code error;
    fs::rename(from, to, error);
    if (error) {
        throw ProtocolError(InternalError,
                            from + " cannot be renamed to " + to + ": " + error.message());
    }
}

/// The editor has renamed already: back, and then as a move that the client records. What the
/// client refuses is renamed again, so that the disk is as the editor left it.
OrderedJson adoptMove(const Services& services, Call& call, const FromToParams& params) {
    if (isOnDisk(params.from)) {
        throw InputError("params.from: there is something in that place still");
    }
    if (!isOnDisk(params.to)) {
        throw InputError("params.to: there is nothing in that place");
    }
    rename(params.to, params.from);
    struct Undo {
        explicit Undo(const FromToParams& ofParams) : params(ofParams) {}
        Undo(const Undo&) = delete;
        Undo& operator=(const Undo&) = delete;
        ~Undo() {
            std::error_code ignored;
            if (isOnDisk(params.from) && !isOnDisk(params.to)) {
                fs::create_directories(fs::path(params.to).parent_path(), ignored);
                fs::rename(params.from, params.to, ignored);
            }
        }
        const FromToParams& params;
    };
    const Undo undo(params);
    ChangeFacts facts;
    const Ran ran = runFromTo(services, call, RequestTypeMove, "Recording the move", params, facts);
    return changeJson(params.root, facts, ran);
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

OrderedJson makeDirectories(const Services& services, Call& call, const PathsParams& params) {
    ChangeFacts facts;
    const Ran ran = runChange(services, call,
                              {"Making directories", params.root, params.paths,
                               changeColumnsOf(RequestTypeMakeDirectory)},
                              facts, [&](const RunOptions& options) {
                                  Ran last;
                                  for (const std::string& path : params.paths) {
                                      const auto request = makeRequest(RequestTypeMakeDirectory,
                                                                       placeOf(params.root));
                                      request->setDestination(closedClientPath(path));
                                      last = services.runs.perform(request, options);
                                      if (!last.isWell()) {
                                          break;
                                      }
                                  }
                                  return last;
                              });
    return changeJson(params.root, facts, ran);
}

PathsParams decodeIgnored(const JsonInput& params, RequestType type) {
    PathsParams change = decodePaths(params);
    for (std::size_t i = 0; i < change.paths.size(); ++i) {
        const std::string problem = problemOfIgnoredName(change.paths[i], type);
        if (!problem.empty()) {
            params.member("paths").array()[i].fail(problem);
        }
    }
    return change;
}

OrderedJson ignore(const Services& services, Call& call, RequestType type,
                   const PathsParams& params) {
    std::set<std::string> directories;
    for (const std::string& path : params.paths) {
        directories.insert(fs::path(path).parent_path().string());
    }
    ChangeFacts facts;
    const Ran ran =
        runChange(services, call,
                  {"Ignoring",
                   params.root,
                   {directories.begin(), directories.end()},
                   ChangeColumns::schedule},
                  facts, [&](const RunOptions& options) {
                      return services.runs.performEdits(
                          makeRequest(type, placeOf(params.root), params.paths), options);
                  });
    OrderedJson items = OrderedJson::array();
    for (const std::string& path : params.paths) {
        if (ran.isWell()) {
            items.push_back({{"path", toJson(String(path))},
                             {"action", type == RequestTypeIgnore ? "ignored" : "unignored"}});
        }
    }
    OrderedJson json{{"items", std::move(items)}};
    addOutcome(json, ran);
    return json;
}

void addIgnoreMethod(Server& server, const Services& services, const char* name, RequestType type) {
    server.dispatcher().add(change<PathsParams>(
        name, [type](const JsonInput& params) { return decodeIgnored(params, type); },
        [services, type](Call& call, const PathsParams& params) {
            return ignore(services, call, type, params);
        }));
}

} // namespace

void addTreeChangeMethods(Server& server, const Services& services) {
    addFromToMethod(server, services, "change/move", "Moving", RequestTypeMove);
    addFromToMethod(server, services, "change/copy", "Copying", RequestTypeCopy);
    server.dispatcher().add(change<FromToParams>(
        "change/adoptMove", decodeFromTo, [services](Call& call, const FromToParams& params) {
            return adoptMove(services, call, params);
        }));
    server.dispatcher().add(change<PathsParams>("change/makeDirectory", decodePaths,
                                                [services](Call& call, const PathsParams& params) {
                                                    return makeDirectories(services, call, params);
                                                }));
    addIgnoreMethod(server, services, "change/ignore", RequestTypeIgnore);
    addIgnoreMethod(server, services, "change/unignore", RequestTypeUnignore);
}

} // namespace quen::tools::server
