#include "Host/Facts/InfoFacts.h"
#include "Tools/Server/Methods/Closure.h"
#include "Tools/Server/Methods/Params.h"
#include "Tools/Server/WorkingCopies/Discovery.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <map>
#include <set>
#include <utility>

namespace quen::tools::server {

namespace {

enum class PlanKind { commit, revert, remove, transfer };

struct PlanParams {
    PlanKind kind = PlanKind::commit;
    std::vector<std::string> paths;
    /// The working copies that the paths lie in, with the paths of each.
    std::map<std::string, std::vector<std::string>> groups;
};

PlanParams decodePlan(const JsonInput& params) {
    params.requireObject({"kind", "paths", "url"});
    PlanParams plan;
    const std::string kind = params.member("kind").string();
    constexpr std::array transfers{"update", "merge", "switch"};
    if (std::find(transfers.begin(), transfers.end(), kind) != transfers.end()) {
        plan.kind = PlanKind::transfer;
    } else if (kind == "revert" || kind == "remove") {
        plan.kind = kind == "revert" ? PlanKind::revert : PlanKind::remove;
    } else if (kind != "commit") {
        params.member("kind").fail("expected \"commit\", \"revert\", \"remove\", \"update\", "
                                   "\"merge\" or \"switch\"");
    }
    plan.paths = readPaths(params);
    for (std::size_t i = 0; i < plan.paths.size(); ++i) {
        const std::string root = rootAbove(plan.paths[i]);
        if (root.empty()) {
            params.member("paths").array()[i].fail("lies in no working copy");
        }
        plan.groups[root].push_back(plan.paths[i]);
    }
    return plan;
}

bool isOneOf(const String& word, std::initializer_list<const char*> words) {
    return std::any_of(words.begin(), words.end(), [&](const char* each) { return word == each; });
}

/// What is on the disk alone and goes when the item is reverted; when it is removed, what is not
/// versioned goes too.
bool isLost(const StatusItem& item, PlanKind kind) {
    if (item.property == "modified" || item.property == "conflicted" ||
        isOneOf(item.status, {"modified", "replaced", "conflicted"})) {
        return true;
    }
    return kind == PlanKind::remove && isOneOf(item.status, {"added", "unversioned", "ignored"});
}

/// Whether the kind does something to the item.
bool isConcerned(const StatusItem& item, PlanKind kind) {
    switch (kind) {
    case PlanKind::commit: return isSent(item);
    case PlanKind::revert:
        return isSent(item) || item.treeConflict || isOneOf(item.status, {"missing", "incomplete"});
    case PlanKind::remove: return true;
    case PlanKind::transfer: return !item.incoming.isNil() || !item.incomingProperty.isNil();
    }
    return false;
}

std::string actionOf(const StatusItem& item, PlanKind kind) {
    if (kind == PlanKind::transfer) {
        return item.incoming.isNil() ? "modified" : item.incoming.str();
    }
    return isOneOf(item.status, {"none", "normal"}) ? "modified" : item.status.str();
}

/// The directories above items, below the root, each once.
std::vector<std::string> directoriesAbove(const std::string& root,
                                          const std::vector<std::string>& paths) {
    std::set<std::string> directories;
    for (const std::string& path : paths) {
        for (std::string at = std::filesystem::path(path).parent_path().string();
             at.size() > root.size(); at = std::filesystem::path(at).parent_path().string()) {
            directories.insert(at);
        }
    }
    return {directories.begin(), directories.end()};
}

/// Those above the items that are not in the repository yet: added, or not even that.
std::vector<std::string> parentsNeeded(const Services& services, const Call& call,
                                       const std::string& root,
                                       const std::vector<std::string>& paths) {
    std::vector<std::string> directories = directoriesAbove(root, paths);
    if (directories.empty()) {
        return {};
    }
    InfoFactsReader reader;
    RunOptions options = optionsOf(call);
    options.watcher = [&](std::string_view piece) { reader.take(piece); };
    services.runs.perform(makeRequest(RequestTypeInfo, placeOf(root), directories), options);
    static_cast<void>(reader.finish());
    std::erase_if(directories, [&](const std::string& directory) {
        const bool isNamed = std::find(paths.begin(), paths.end(), directory) != paths.end();
        return isNamed || std::any_of(reader.facts().entries.begin(), reader.facts().entries.end(),
                                      [&](const InfoEntry& entry) {
                                          return entry.path == std::string_view(directory) &&
                                                 entry.schedule != "add";
                                      });
    });
    return directories;
}

struct Plan {
    OrderedJson items = OrderedJson::array();
    OrderedJson alsoTaken = OrderedJson::array();
    OrderedJson lost = OrderedJson::array();
    OrderedJson decidedForMine = OrderedJson::array();
    std::set<std::string> needsParents;
    Ran ran;
};

void addItem(Plan& plan, const StatusItem& item, const PlanParams& params) {
    const bool isNamed =
        std::find(params.paths.begin(), params.paths.end(), item.path) != params.paths.end();
    if (!isConcerned(item, params.kind)) {
        return;
    }
    plan.items.push_back(
        {{"path", toJson(String(item.path))}, {"action", actionOf(item, params.kind)}});
    if (!isNamed && params.kind != PlanKind::transfer) {
        plan.alsoTaken.push_back(toJson(String(item.path)));
    }
    if (params.kind != PlanKind::commit && params.kind != PlanKind::transfer &&
        isLost(item, params.kind)) {
        plan.lost.push_back(toJson(String(item.path)));
    }
    if (params.kind == PlanKind::transfer && isSent(item)) {
        plan.decidedForMine.push_back(toJson(String(item.path)));
    }
}

std::vector<StatusItem> incomingItems(const Services& services, const Call& call,
                                      const std::string& root,
                                      const std::vector<std::string>& paths, Ran& ran) {
    StatusFactsReader reader;
    RunOptions options = optionsOf(call);
    options.watcher = [&](std::string_view piece) { reader.take(piece); };
    ran =
        services.runs.perform(makeRequest(RequestTypeRemoteStatus, placeOf(root), paths), options);
    static_cast<void>(reader.finish());
    std::vector<StatusItem> items;
    for (const StatusEntry& entry : reader.facts().entries) {
        items.push_back(statusItemOf(entry));
    }
    return items;
}

OrderedJson plan(const Services& services, const Call& call, const PlanParams& params) {
    Plan plan;
    OrderedJson groups = OrderedJson::array();
    for (const auto& [root, paths] : params.groups) {
        groups.push_back({{"workingCopy", toJson(String(root))}, {"paths", paths}});
        Ran ran;
        const std::vector<StatusItem> items =
            params.kind == PlanKind::transfer ? incomingItems(services, call, root, paths, ran)
                                              : freshItems(services, call.stop(), root, paths, ran);
        for (const StatusItem& item : items) {
            addItem(plan, item, params);
        }
        if (params.kind == PlanKind::commit) {
            for (std::string& parent : parentsNeeded(services, call, root, paths)) {
                plan.needsParents.insert(std::move(parent));
            }
        }
        plan.ran = ran.isWell() ? plan.ran : ran;
    }
    OrderedJson json{
        {"items", std::move(plan.items)}, {"alsoTaken", std::move(plan.alsoTaken)},
        {"lost", std::move(plan.lost)},   {"needsParents", plan.needsParents},
        {"groups", std::move(groups)},    {"decidedForMine", std::move(plan.decidedForMine)}};
    addOutcome(json, plan.ran);
    return json;
}

} // namespace

void addPlanMethods(Server& server, const Services& services) {
    server.dispatcher().add(query<PlanParams>(
        "change/plan", decodePlan, [services](const Call& call, const PlanParams& params) {
            return plan(services, call, params);
        }));
}

} // namespace quen::tools::server
