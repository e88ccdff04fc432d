#include "Host/Facts/InfoFacts.h"
#include "Host/Facts/ListFacts.h"
#include "Host/Places/Locations.h"
#include "Host/Plans/PlanQueries.h"
#include "Host/Plans/Plans.h"

#include <algorithm>
#include <filesystem>
#include <initializer_list>
#include <system_error>

namespace quen {

namespace {

bool isOneOf(const String& word, std::initializer_list<std::string_view> words) noexcept {
    for (const std::string_view each : words) {
        if (word.view() == each) {
            return true;
        }
    }
    return false;
}

bool hasChangedProperties(const StatusEntry& entry) noexcept {
    return isOneOf(entry.properties, {"modified", "conflicted"});
}

/// Added with a history: a status does not tell whether it was edited since.
bool isTopOfCopy(const StatusEntry& entry) noexcept {
    return entry.isCopied && isOneOf(entry.item, {"added", "replaced"});
}

bool isDirectory(const StatusEntry& entry) {
    std::error_code ignored;
    return std::filesystem::is_directory(
        std::filesystem::symlink_status(entry.path.str(), ignored));
}

CopiedEdits editsIn(const StatusFacts& facts, const QueryRunner& run) {
    std::vector<String> copies;
    for (const StatusEntry& entry : facts.entries) {
        if (isTopOfCopy(entry)) {
            copies.push_back(entry.path);
        }
    }
    return copies.empty() ? CopiedEdits() : askCopiedEdits(copies, run);
}

/// Edited in place, in a copy, or standing in for what was there before.
bool holdsOwnContent(const StatusEntry& entry, const CopiedEdits& edits) {
    if (isTopOfCopy(entry)) {
        return edits.texts.contains(entry.path.str());
    }
    if (isOneOf(entry.item, {"modified", "conflicted", "obstructed"})) {
        return true;
    }
    // Something else may stand where an item is deleted: a revert puts the item in its place.
    const bool standsThere = isOneOf(entry.item, {"replaced", "deleted"}) ||
                             (entry.isTreeConflict && entry.item.view() != "added");
    return standsThere && isOnDisk(entry.path.str()) && !isDirectory(entry);
}

LostItem lossByRevert(const StatusEntry& entry, const CopiedEdits& edits) {
    LostItem item{entry.path, entry, holdsOwnContent(entry, edits), hasChangedProperties(entry)};
    item.losesProperties = item.losesProperties || edits.properties.contains(entry.path.str());
    return item;
}

bool losesAnything(const LostItem& item) noexcept {
    return item.losesContent || item.losesProperties;
}

/// What a removal takes beyond what a revert would: what is in no revision at all.
LostItem lossByRemoval(const StatusEntry& entry, const CopiedEdits& edits) {
    LostItem item = lossByRevert(entry, edits);
    const bool isNew = isOneOf(entry.item, {"unversioned", "ignored"}) ||
                       (entry.item.view() == "added" && !isTopOfCopy(entry));
    const bool isEmptyAddition = entry.item.view() == "added" && isDirectory(entry);
    item.losesContent =
        item.losesContent || (isNew && isOnDisk(entry.path.str()) && !isEmptyAddition);
    return item;
}

/// Kind and last change of each, in the order of the URLs.
void askRemoved(const std::vector<String>& urls, RemoteRemovePlan& plan, const QueryRunner& run) {
    StringArray arguments{"info", "--xml"};
    for (const String& url : urls) {
        arguments.push_back(closedClientPath(url.str()));
    }
    const auto query = ClientCommand::makeQuery(std::move(arguments));
    run(*query);
    InfoFactsReader reader;
    reader.take(query->output()->bytes());
    const Error broken = reader.finish();
    plan.error = query->error() ? query->error() : broken;
    const InfoFacts facts = reader.takeFacts();
    plan.unreadable = facts.unreadable;
    for (std::size_t i = 0; i < std::min(facts.entries.size(), urls.size()); ++i) {
        plan.removed.push_back({urls[i], facts.entries[i].kind, facts.entries[i].commit, 0});
    }
}

std::size_t askItemsBelow(const String& url, Error& error, const QueryRunner& run) {
    const auto query =
        ClientCommand::makeQuery({"list", "-R", "--xml", closedClientPath(url.str())});
    run(*query);
    ListFactsReader reader;
    reader.take(query->output()->bytes());
    const Error broken = reader.finish();
    const Error failed = query->error() ? query->error() : broken;
    error = error ? error : failed;
    return reader.facts().entries.size();
}

} // namespace

RemoteRemovePlan planRemoteRemove(const std::vector<String>& urls, const QueryRunner& run) {
    RemoteRemovePlan plan;
    if (urls.empty()) {
        return plan;
    }
    askRemoved(urls, plan, run);
    for (RemovedURL& each : plan.removed) {
        if (!plan.error && each.kind.view() == "dir") {
            each.itemsBelow = askItemsBelow(each.url, plan.error, run);
        }
    }
    return plan;
}

std::vector<String> lostContent(const std::vector<LostItem>& lost) {
    std::vector<String> paths;
    for (const LostItem& each : lost) {
        if (each.losesContent) {
            paths.push_back(each.path);
        }
    }
    return paths;
}

std::vector<String> lostPropertyNotes(const std::vector<LostItem>& lost, const QueryRunner& run) {
    constexpr std::size_t mostOfThem = 1024 * 1024;
    std::vector<String> paths;
    for (const LostItem& each : lost) {
        if (each.losesProperties) {
            paths.push_back(each.path);
        }
    }
    std::string text = askPropertyDifferences(paths, run);
    if (text.size() > mostOfThem) {
        text.resize(mostOfThem);
        text += "\n(More was changed than is kept.)\n";
    }
    return text.empty() ? std::vector<String>() : std::vector<String>{String(text)};
}

RevertPlan planRevert(const std::vector<String>& paths, const QueryRunner& run) {
    RevertPlan plan;
    StatusAnswer answer = askStatus(paths, {"--ignore-externals"}, run);
    const CopiedEdits edits = editsIn(answer.facts, run);
    plan.error = answer.error ? answer.error : edits.error;
    plan.unreadable = std::move(answer.facts.unreadable);
    for (const StatusEntry& entry : answer.facts.entries) {
        const bool isTouched = isLocallyChanged(entry) && !entry.isFileExternal;
        if (!isTouched) {
            continue;
        }
        plan.touched.push_back(entry);
        LostItem item = lossByRevert(entry, edits);
        if (losesAnything(item)) {
            plan.lost.push_back(std::move(item));
        }
    }
    return plan;
}

RemovePlan planRemove(const std::vector<String>& paths, const QueryRunner& run) {
    RemovePlan plan;
    StatusAnswer answer = askStatus(paths, {"--no-ignore"}, run);
    const CopiedEdits edits = editsIn(answer.facts, run);
    plan.error = answer.error ? answer.error : edits.error;
    plan.unreadable = std::move(answer.facts.unreadable);
    for (const StatusEntry& entry : answer.facts.entries) {
        LostItem item = lossByRemoval(entry, edits);
        if (losesAnything(item)) {
            plan.lost.push_back(std::move(item));
        }
    }
    return plan;
}

} // namespace quen
