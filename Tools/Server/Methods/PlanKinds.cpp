#include "Tools/Server/Methods/PlanKinds.h"

#include "Host/Places/Locations.h"
#include "Tools/Server/Methods/ChangeJson.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <iterator>
#include <utility>

namespace quen::tools::server {

namespace {

std::vector<String> stringsOf(const std::vector<std::string>& paths) {
    return {paths.begin(), paths.end()};
}

void addItem(PlanAnswer& answer, const String& path, const String& action) {
    answer.items.push_back({{"path", toJson(path)}, {"action", toJson(action)}});
}

void addPaths(OrderedJson& json, const std::vector<StatusEntry>& entries) {
    for (const StatusEntry& entry : entries) {
        json.push_back(toJson(entry.path));
    }
}

void addPaths(OrderedJson& json, const std::vector<String>& paths) {
    for (const String& path : paths) {
        json.push_back(toJson(path));
    }
}

/// Whether an item has something to say of itself; otherwise it is its properties that differ.
bool saysSomething(const String& word) {
    return word != "none" && word != "normal" && !word.isEmpty();
}

String actionOf(const StatusEntry& entry) {
    return saysSomething(entry.item) ? entry.item : String("modified");
}

bool isNamed(const PlanParams& params, const String& path) {
    return std::find(params.paths.begin(), params.paths.end(), path.str()) != params.paths.end();
}

void addBeyondNamed(PlanAnswer& answer, const PlanParams& params, const String& path) {
    if (!isNamed(params, path)) {
        answer.alsoTaken.push_back(toJson(path));
    }
}

/// Directories that lead to a path and are not versioned themselves.
void addUnversionedParents(PlanAnswer& answer, const Services& services, const PlanParams& params) {
    const RunOptions options{params.stop, {}, {}};
    std::vector<std::string> found;
    for (const CommitGroup& group : params.groups) {
        const WorkingCopyPtr copy = services.copies.open(group.workingCopy.str(), options).copy;
        if (copy == nullptr) {
            continue;
        }
        std::vector<std::string> paths;
        std::transform(group.paths.begin(), group.paths.end(), std::back_inserter(paths),
                       [](const String& path) { return path.str(); });
        services.copies.refreshBelow(copy, std::move(paths), options);
        for (const String& path : group.paths) {
            const std::string top = copy->unversionedAt(path.str());
            for (std::string at = std::filesystem::path(path.str()).parent_path().string();
                 !top.empty() && isAtOrBelow(at, top);
                 at = std::filesystem::path(at).parent_path().string()) {
                found.push_back(at);
            }
        }
    }
    std::sort(found.begin(), found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());
    for (const std::string& path : found) {
        if (!isNamed(params, String(path))) {
            answer.needsParents.push_back(toJson(String(path)));
        }
    }
}

Error planOfCommit(const Services& services, const PlanParams& params, const QueryRunner& run,
                   PlanAnswer& answer) {
    const CommitPlan plan = planCommit(stringsOf(params.paths), run);
    for (const StatusEntry& entry : plan.sent) {
        addItem(answer, entry.path, actionOf(entry));
    }
    addPaths(answer.alsoTaken, plan.alsoTaken);
    addPaths(answer.needsParents, plan.needsParents);
    if (plan.sent.empty()) {
        addUnversionedParents(answer, services, params);
    }
    addPaths(answer.needsOtherEnds, plan.needsOtherEnds);
    addPaths(answer.conflicts, plan.conflicts);
    return plan.error;
}

Error planOfRevert(const Services& /*services*/, const PlanParams& params, const QueryRunner& run,
                   PlanAnswer& answer) {
    const RevertPlan plan = planRevert(stringsOf(params.paths), run);
    for (const StatusEntry& entry : plan.touched) {
        addItem(answer, entry.path, actionOf(entry));
        addBeyondNamed(answer, params, entry.path);
    }
    for (const LostItem& item : plan.lost) {
        answer.lost.push_back(toJson(item.path));
    }
    return plan.error;
}

Error planOfRemove(const Services& /*services*/, const PlanParams& params, const QueryRunner& run,
                   PlanAnswer& answer) {
    const RemovePlan plan = planRemove(stringsOf(params.paths), run);
    for (const std::string& path : params.paths) {
        addItem(answer, String(path), "deleted");
    }
    for (const LostItem& item : plan.lost) {
        if (!isNamed(params, item.path)) {
            addItem(answer, item.path, actionOf(item.status));
            answer.alsoTaken.push_back(toJson(item.path));
        }
        answer.lost.push_back(toJson(item.path));
    }
    return plan.error;
}

Error planOfUpdate(const Services& /*services*/, const PlanParams& params, const QueryRunner& run,
                   PlanAnswer& answer) {
    const UpdatePlan plan = planUpdate(stringsOf(params.paths), String(), run);
    for (const StatusEntry& entry : plan.incoming) {
        addItem(answer, entry.path,
                saysSomething(entry.incomingItem) ? entry.incomingItem : String("modified"));
    }
    addPaths(answer.decidedForMine, plan.changedOnBothSides);
    addPaths(answer.inTheWay, plan.inTheWay);
    addPaths(answer.localChanges, plan.localChanges);
    return plan.error;
}

Error planOfMerge(const Services& /*services*/, const PlanParams& params, const QueryRunner& run,
                  PlanAnswer& answer) {
    const std::string& root = params.paths.front();
    const MergePlan plan =
        planMerge(closedClientPath(params.url), String(root), String(params.range), run);
    answer.items = itemsJson(plan.facts, root);
    for (const ConflictFacts& conflict : plan.facts.conflicts) {
        // The provider's merge decides texts and properties; a tree waits for a person.
        const bool isTree = conflict.tree != ConflictState::none;
        (isTree ? answer.conflicts : answer.decidedForMine)
            .push_back(toJson(String(absolutePath(conflict.path, root))));
    }
    addPaths(answer.localChanges, plan.localChanges);
    return plan.error;
}

Error planOfSwitch(const Services& /*services*/, const PlanParams& params, const QueryRunner& run,
                   PlanAnswer& answer) {
    const SwitchPlan plan =
        planSwitch(String(params.paths.front()), closedClientPath(params.url), run);
    for (const PlannedChange& change : plan.incoming) {
        addItem(answer, change.path, saysSomething(change.item) ? change.item : String("modified"));
    }
    addPaths(answer.conflicts, plan.changedOnBothSides);
    addPaths(answer.inTheWay, plan.inTheWay);
    addPaths(answer.localChanges, plan.localChanges);
    return plan.error;
}

constexpr std::array planKinds{
    PlanKind{"commit", planOfCommit},           PlanKind{"revert", planOfRevert},
    PlanKind{"remove", planOfRemove},           PlanKind{"update", planOfUpdate},
    PlanKind{"merge", planOfMerge, true, true}, PlanKind{"switch", planOfSwitch, true}};

} // namespace

const PlanKind* planKindNamed(const std::string& word) {
    const auto* const found = std::find_if(planKinds.begin(), planKinds.end(),
                                           [&](const PlanKind& each) { return word == each.word; });
    return found == planKinds.end() ? nullptr : found;
}

} // namespace quen::tools::server
