#include "Tools/Server/WorkingCopies/StatusTable.h"

#include "Host/Places/Locations.h"
#include "Tools/Console/JsonOutput.h"

#include <algorithm>
#include <array>
#include <utility>

namespace quen::tools::server {

namespace {

/// The same object for every item that has the word: 60,000 items share a few texts.
String shared(const String& word) {
    static const std::array<String, 13> words{
        String::constant("none"),       String::constant("normal"),
        String::constant("modified"),   String::constant("added"),
        String::constant("deleted"),    String::constant("replaced"),
        String::constant("missing"),    String::constant("unversioned"),
        String::constant("ignored"),    String::constant("external"),
        String::constant("conflicted"), String::constant("obstructed"),
        String::constant("incomplete")};
    const auto* const found = std::find(words.begin(), words.end(), word);
    return found == words.end() ? word : *found;
}

/// nil where the repository has nothing newer.
String newer(const String& word) {
    return word == "none" || word == "normal" || word.isEmpty() ? String() : shared(word);
}

void addText(OrderedJson& json, const char* name, const String& text) {
    if (!text.isNil()) {
        json[name] = toJson(text);
    }
}

void addFlag(OrderedJson& json, const char* name, bool flag) {
    if (flag) {
        json[name] = true;
    }
}

} // namespace

StatusItem statusItemOf(const StatusEntry& entry) {
    StatusItem item;
    item.path = entry.path.str();
    item.status = shared(entry.item.isNil() ? String("none") : entry.item);
    item.property = shared(entry.properties.isNil() ? String("none") : entry.properties);
    item.incoming = newer(entry.incomingItem);
    item.incomingProperty = newer(entry.incomingProperties);
    item.changelist = entry.changelist;
    item.movedFrom = entry.movedFrom;
    item.movedTo = entry.movedTo;
    if (const LockFacts* const lock = (entry.lock ? entry.lock : entry.repositoryLock).get()) {
        item.lockOwner = lock->owner.isNil() ? String("") : lock->owner;
        item.lockComment = lock->comment;
        item.lockCreated = lock->created;
    }
    item.revision = entry.revision;
    item.copied = entry.isCopied;
    item.treeConflict = entry.isTreeConflict;
    item.locked = entry.isWorkingCopyLocked;
    item.switched = entry.isSwitched;
    item.external = entry.isFileExternal || entry.item == "external";
    return item;
}

OrderedJson statusItemJson(const StatusItem& item) {
    OrderedJson json;
    json["path"] = toJson(String(item.path));
    json["status"] = toJson(item.status);
    json["property"] = toJson(item.property);
    addFlag(json, "copied", item.copied);
    addText(json, "incoming", item.incoming);
    addText(json, "incomingProperty", item.incomingProperty);
    addText(json, "changelist", item.changelist);
    addFlag(json, "treeConflict", item.treeConflict);
    addFlag(json, "locked", item.locked);
    if (!item.lockOwner.isNil()) {
        json["lock"] = {{"owner", toJson(item.lockOwner)},
                        {"comment", toJson(item.lockComment)},
                        {"created", toJson(item.lockCreated)}};
    }
    addFlag(json, "switched", item.switched);
    addFlag(json, "external", item.external);
    addText(json, "movedFrom", item.movedFrom);
    addText(json, "movedTo", item.movedTo);
    if (item.revision && *item.revision >= 0) {
        json["revision"] = *item.revision;
    }
    return json;
}

void StatusTable::take(std::vector<StatusItem> items, Items& former, StatusChange& change) {
    for (StatusItem& item : items) {
        const auto before = former.find(item.path);
        if (before == former.end() || before->second != item) {
            change.changed.push_back(item);
        }
        if (before != former.end()) {
            if (item.isIgnored() && !before->second.isIgnored()) {
                change.hidden.push_back(item.path);
            }
            former.erase(before);
        }
        std::string path = item.path;
        // The later of two entries counts: members of changelists are told again at the end.
        items_.insert_or_assign(std::move(path), std::move(item));
    }
    for (auto& [path, item] : former) {
        if (!items_.contains(path)) {
            change.removed.push_back(std::move(item));
        }
    }
}

StatusChange StatusTable::replaceAll(std::vector<StatusItem> items) {
    Items former = std::exchange(items_, {});
    StatusChange change;
    take(std::move(items), former, change);
    return change;
}

StatusChange StatusTable::replaceBelow(const std::vector<std::string>& paths,
                                       std::vector<StatusItem> items) {
    Items former;
    for (const std::string& path : paths) {
        for (auto at = items_.lower_bound(path);
             at != items_.end() && at->first.starts_with(path);) {
            const auto next = std::next(at);
            if (isAtOrBelow(at->first, path)) {
                former.insert(items_.extract(at));
            }
            at = next;
        }
    }
    StatusChange change;
    take(std::move(items), former, change);
    return change;
}

std::map<std::string, std::size_t> StatusTable::counts(bool includeIgnored) const {
    std::map<std::string, std::size_t> counts;
    for (const auto& [path, item] : items_) {
        if (includeIgnored || !item.isIgnored()) {
            ++counts[item.status.str()];
        }
    }
    return counts;
}

const StatusItem* StatusTable::unversionedAt(std::string_view path) const {
    while (!path.empty()) {
        const auto found = items_.find(path);
        if (found != items_.end() && found->second.isUnversioned()) {
            return &found->second;
        }
        path = path.substr(0, path.rfind('/') == std::string_view::npos ? 0 : path.rfind('/'));
    }
    return nullptr;
}

} // namespace quen::tools::server
