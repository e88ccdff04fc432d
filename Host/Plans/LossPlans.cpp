#include "Host/Plans/PlanQueries.h"
#include "Host/Plans/Plans.h"

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

bool isOnDisk(const StatusEntry& entry) {
    std::error_code ignored;
    return std::filesystem::exists(std::filesystem::symlink_status(entry.path.str(), ignored));
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
    const bool standsThere =
        entry.item.view() == "replaced" || (entry.isTreeConflict && entry.item.view() != "added");
    return standsThere && isOnDisk(entry) && !isDirectory(entry);
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
    item.losesContent = item.losesContent || (isNew && isOnDisk(entry) && !isEmptyAddition);
    return item;
}

} // namespace

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
