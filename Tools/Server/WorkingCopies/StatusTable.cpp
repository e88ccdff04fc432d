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

/// Both are in the order of their paths.
StatusChange differences(const StatusItems::ByPath& former, const StatusItems::ByPath& now) {
    StatusChange change;
    auto before = former.begin();
    for (const auto& [path, item] : now) {
        for (; before != former.end() && before->first < path; ++before) {
            change.removed.push_back(before->second);
        }
        const bool wasThere = before != former.end() && before->first == path;
        if (!wasThere || before->second != item) {
            change.changed.push_back(item);
        }
        if (wasThere) {
            if (item.isIgnored() && !before->second.isIgnored()) {
                change.hidden.push_back(path);
            }
            ++before;
        }
    }
    for (; before != former.end(); ++before) {
        change.removed.push_back(before->second);
    }
    return change;
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

void StatusItems::put(StatusItem item) {
    const std::size_t before = byPath_.size();
    const auto at = byPath_.try_emplace(byPath_.end(), item.path);
    if (byPath_.size() == before) {
        --counts_[at->second.status.str()];
        externals_ -= at->second.external ? 1U : 0U;
    }
    const auto count = counts_.find(item.status.view());
    ++(count == counts_.end() ? counts_[item.status.str()] : count->second);
    externals_ += item.external ? 1U : 0U;
    at->second = std::move(item);
}

void StatusItems::moveTo(StatusItems& others, std::string_view path) {
    for (auto at = byPath_.lower_bound(path); at != byPath_.end() && at->first.starts_with(path);) {
        const auto next = std::next(at);
        if (isAtOrBelow(at->first, path)) {
            --counts_[at->second.status.str()];
            externals_ -= at->second.external ? 1U : 0U;
            others.put(std::move(byPath_.extract(at).mapped()));
        }
        at = next;
    }
}

std::size_t StatusItems::countOf(std::string_view word) const {
    const auto found = counts_.find(word);
    return found == counts_.end() ? 0 : found->second;
}

std::map<std::string, std::size_t> StatusItems::counts(bool includeIgnored) const {
    std::map<std::string, std::size_t> counts;
    for (const auto& [word, count] : counts_) {
        if (count > 0 && (includeIgnored || word != "ignored")) {
            counts.emplace(word, count);
        }
    }
    return counts;
}

void StatusTable::fill(StatusItems items) {
    items_ = std::move(items);
}

StatusChange StatusTable::replaceAll(StatusItems items) {
    const StatusItems former = std::exchange(items_, std::move(items));
    return differences(former.byPath(), items_.byPath());
}

StatusChange StatusTable::replaceBelow(const std::vector<std::string>& paths,
                                       const StatusItems& items) {
    StatusItems former;
    for (const std::string& path : paths) {
        items_.moveTo(former, path);
    }
    for (const auto& [path, item] : items.byPath()) {
        items_.put(item);
    }
    return differences(former.byPath(), items.byPath());
}

const StatusItem* StatusTable::unversionedAt(std::string_view path) const {
    while (!path.empty()) {
        const auto found = items_.byPath().find(path);
        if (found != items_.byPath().end() && found->second.isUnversioned()) {
            return &found->second;
        }
        path = path.substr(0, path.rfind('/') == std::string_view::npos ? 0 : path.rfind('/'));
    }
    return nullptr;
}

} // namespace quen::tools::server
