#include "Tools/Server/Methods/Params.h"
#include "Tools/Server/Methods/PlanKinds.h"
#include "Tools/Server/WorkingCopies/Discovery.h"

#include <algorithm>
#include <utility>

namespace quen::tools::server {

namespace {

void readSource(const JsonInput& params, const PlanKind& kind, PlanParams& plan) {
    plan.url = readURL(params.member("url"));
    if (plan.paths.size() != 1) {
        params.member("paths").fail("expected one path");
    }
    const std::string from = kind.hasRange ? readRevision(params, "from") : std::string();
    const std::string to = kind.hasRange ? readRevision(params, "to") : std::string();
    if (from.empty() != to.empty()) {
        params.fail("expected both \"from\" and \"to\", or neither");
    }
    plan.range = from.empty() ? std::string() : from + ":" + to;
}

std::vector<CommitGroup> readGroups(const JsonInput& params,
                                    const std::vector<std::string>& paths) {
    std::vector<CommitGroup> groups;
    for (std::size_t i = 0; i < paths.size(); ++i) {
        const String root = rootAbove(paths[i]);
        if (root.isEmpty()) {
            params.member("paths").array()[i].fail("lies in no working copy");
        }
        auto group = std::find_if(groups.begin(), groups.end(), [&](const CommitGroup& each) {
            return each.workingCopy == root;
        });
        group = group == groups.end() ? groups.insert(group, {root, {}}) : group;
        group->paths.emplace_back(paths[i]);
    }
    return groups;
}

PlanParams decodePlan(const JsonInput& params) {
    PlanParams plan;
    plan.kind = params.member("kind").string();
    const PlanKind* const kind = planKindNamed(plan.kind);
    if (kind == nullptr) {
        params.member("kind").fail("expected \"commit\", \"revert\", \"remove\", \"update\", "
                                   "\"merge\" or \"switch\"");
    }
    if (kind->hasRange) {
        params.requireObject({"kind", "paths", "url", "from", "to"});
    } else if (kind->hasURL) {
        params.requireObject({"kind", "paths", "url"});
    } else {
        params.requireObject({"kind", "paths"});
    }
    plan.paths = readPaths(params);
    if (kind->hasURL) {
        readSource(params, *kind, plan);
    }
    plan.groups = readGroups(params, plan.paths);
    return plan;
}

OrderedJson groupsJson(const std::vector<CommitGroup>& groups) {
    OrderedJson json = OrderedJson::array();
    for (const CommitGroup& group : groups) {
        OrderedJson paths = OrderedJson::array();
        for (const String& path : group.paths) {
            paths.push_back(toJson(path));
        }
        json.push_back({{"workingCopy", toJson(group.workingCopy)}, {"paths", std::move(paths)}});
    }
    return json;
}

OrderedJson plan(const Services& services, const Call& call, const PlanParams& params) {
    PlanAnswer answer;
    PlanParams stoppable = params;
    stoppable.stop = call.stop();
    const Ran ran = services.runs.query(
        [&](const QueryRunner& run) {
            return planKindNamed(params.kind)->make(services, stoppable, run, answer);
        },
        optionsOf(call));
    OrderedJson json{{"items", std::move(answer.items)},
                     {"alsoTaken", std::move(answer.alsoTaken)},
                     {"lost", std::move(answer.lost)},
                     {"needsParents", std::move(answer.needsParents)},
                     {"groups", groupsJson(params.groups)},
                     {"decidedForMine", std::move(answer.decidedForMine)},
                     {"needsOtherEnds", std::move(answer.needsOtherEnds)},
                     {"conflicts", std::move(answer.conflicts)},
                     {"inTheWay", std::move(answer.inTheWay)},
                     {"localChanges", std::move(answer.localChanges)}};
    addOutcome(json, ran);
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
