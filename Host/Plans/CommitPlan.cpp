#include "Foundation/PathComponents.h"
#include "Host/Places/Locations.h"
#include "Host/Plans/PlanQueries.h"
#include "Host/Plans/Plans.h"
#include "Host/WorkingCopyCleanup.h"

#include <algorithm>
#include <set>

namespace quen {

namespace {

using Paths = std::set<std::string, std::less<>>;

bool isScheduled(const StatusEntry& entry) noexcept {
    const std::string_view word = entry.item.view();
    return word == "modified" || word == "added" || word == "deleted" || word == "replaced" ||
           entry.properties.view() == "modified";
}

/// One of the directories that lead to `path` is among `directories`.
bool liesBelowAny(std::string_view path, const Paths& directories) {
    for (auto parent = deletingLastPathComponent(path); parent.size() > 1;
         parent = deletingLastPathComponent(parent)) {
        if (directories.contains(parent)) {
            return true;
        }
    }
    return false;
}

void sortEntry(const StatusEntry& entry, CommitPlan& plan) {
    if (isConflicted(entry)) {
        plan.conflicts.push_back(entry);
    } else if (isScheduled(entry)) {
        plan.sent.push_back(entry);
    } else if (entry.item.view() == "unversioned") {
        plan.unversioned.push_back(entry);
    } else if (entry.item.view() == "missing" || entry.item.view() == "incomplete" ||
               entry.item.view() == "obstructed") {
        plan.missing.push_back(entry);
    }
}

Paths pathsOf(const std::vector<StatusEntry>& entries) {
    Paths paths;
    for (const StatusEntry& entry : entries) {
        paths.insert(entry.path.str());
    }
    return paths;
}

/// A deleted directory is sent as one, without what was in it.
void dropWithinDeleted(std::vector<StatusEntry>& sent) {
    Paths deleted;
    for (const StatusEntry& entry : sent) {
        if (entry.item.view() == "deleted") {
            deleted.insert(entry.path.str());
        }
    }
    sent.erase(std::remove_if(sent.begin(), sent.end(),
                              [&](const StatusEntry& entry) {
                                  return entry.item.view() == "deleted" &&
                                         liesBelowAny(entry.path.view(), deleted);
                              }),
               sent.end());
}

std::vector<CommitGroup> groupsOf(const std::vector<String>& paths) {
    std::vector<CommitGroup> groups;
    for (const String& path : paths) {
        const String top = topOfWorkingCopy(path);
        auto group = std::find_if(groups.begin(), groups.end(),
                                  [&](const CommitGroup& each) { return each.workingCopy == top; });
        if (group == groups.end()) {
            group = groups.insert(groups.end(), {top, {}});
        }
        group->paths.push_back(path);
    }
    return groups;
}

/// The directories above the paths, up to the tops of their working copies.
std::vector<String> directoriesAbove(const std::vector<CommitGroup>& groups) {
    Paths found;
    for (const CommitGroup& group : groups) {
        for (const String& path : group.paths) {
            const std::string_view top = group.workingCopy.view();
            for (auto parent = deletingLastPathComponent(path.view());
                 !top.empty() && isAtOrBelow(parent, top) && found.emplace(parent).second;
                 parent = deletingLastPathComponent(parent)) {
            }
        }
    }
    return {found.begin(), found.end()};
}

void findNeeded(CommitPlan& plan, const QueryRunner& run) {
    const Paths sent = pathsOf(plan.sent);
    StatusAnswer above =
        askStatus(directoriesAbove(plan.groups), {"--depth", "empty", "--ignore-externals"}, run);
    plan.error = plan.error ? plan.error : above.error;
    for (const StatusEntry& entry : above.facts.entries) {
        const bool isNew = entry.item.view() == "added" || entry.item.view() == "replaced";
        const bool leads = std::any_of(sent.begin(), sent.end(), [&](const std::string& path) {
            return isAtOrBelow(path, entry.path.view());
        });
        if (isNew && leads && !sent.contains(entry.path.view())) {
            plan.needsParents.push_back(entry.path);
        }
    }
    for (const StatusEntry& entry : plan.sent) {
        for (const String& end : {entry.movedFrom, entry.movedTo}) {
            if (!end.isNil() && !sent.contains(end.view()) && !liesBelowAny(end.view(), sent)) {
                plan.needsOtherEnds.push_back(end);
            }
        }
    }
}

} // namespace

CommitPlan planCommit(const std::vector<String>& paths, const QueryRunner& run) {
    CommitPlan plan;
    std::vector<String> plain;
    std::transform(paths.begin(), paths.end(), std::back_inserter(plain),
                   [](const String& path) { return String(plainPath(path.str())); });
    StatusAnswer answer = askStatus(plain, {"--ignore-externals"}, run);
    plan.error = answer.error;
    plan.unreadable = std::move(answer.facts.unreadable);
    for (const StatusEntry& entry : answer.facts.entries) {
        // A file external is sent only where it is named itself.
        const bool isNamed = std::find(plain.begin(), plain.end(), entry.path) != plain.end();
        if (!entry.isFileExternal || isNamed) {
            sortEntry(entry, plan);
        }
    }
    dropWithinDeleted(plan.sent);
    for (const StatusEntry& entry : plan.sent) {
        if (std::find(plain.begin(), plain.end(), entry.path) == plain.end()) {
            plan.alsoTaken.push_back(entry.path);
        }
    }
    plan.groups = groupsOf(plain);
    findNeeded(plan, run);
    return plan;
}

} // namespace quen
