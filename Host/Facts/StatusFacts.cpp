#include "Host/Facts/StatusFacts.h"

#include "Host/Facts/RecordReading.h"
#include "Host/Places/Locations.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string>
#include <utility>

namespace quen {

namespace {

/// The client's words, so that many entries share the text of each.
String sharedWord(std::optional<std::string_view> word) {
    static const std::array words = {
        String::constant("normal"),     String::constant("none"),
        String::constant("modified"),   String::constant("added"),
        String::constant("deleted"),    String::constant("replaced"),
        String::constant("missing"),    String::constant("incomplete"),
        String::constant("conflicted"), String::constant("unversioned"),
        String::constant("ignored"),    String::constant("obstructed"),
        String::constant("external")};
    if (!word) {
        return {};
    }
    const auto* const found = std::find_if(
        words.begin(), words.end(), [&](const String& each) { return each.view() == *word; });
    return found == words.end() ? String(*word) : *found;
}

bool isOneOf(const String& word, std::initializer_list<std::string_view> words) noexcept {
    return std::find(words.begin(), words.end(), word.view()) != words.end();
}

bool isTrue(const XMLElement& element, std::string_view attribute) noexcept {
    return element.attribute(attribute) == "true";
}

void takeWorkingCopyStatus(const XMLElement& status, TextTaker& texts, StatusEntry& entry) {
    entry.item = sharedWord(status.attribute("item"));
    entry.properties = sharedWord(status.attribute("props"));
    entry.revision = numberIn(status.attribute("revision"));
    entry.commit = texts.takeCommit(status);
    entry.movedFrom = texts.take(status.attribute("moved-from"));
    entry.movedTo = texts.take(status.attribute("moved-to"));
    entry.lock = texts.takeLock(status);
    entry.isCopied = isTrue(status, "copied");
    entry.isSwitched = isTrue(status, "switched");
    entry.isFileExternal = isTrue(status, "file-external");
    entry.isWorkingCopyLocked = isTrue(status, "wc-locked");
    entry.isTreeConflict = isTrue(status, "tree-conflicted");
}

void takeRepositoryStatus(const XMLElement& status, TextTaker& texts, StatusEntry& entry) {
    entry.incomingItem = sharedWord(status.attribute("item"));
    entry.incomingProperties = sharedWord(status.attribute("props"));
    entry.repositoryLock = texts.takeLock(status);
}

/// The other end of a move, in the form of the entry's path. The client writes an end that lies
/// outside the target relative to the target, and any other like the entry.
String fromTarget(const String& end, std::string_view target) {
    if (!end.view().starts_with("../") || isAtOrBelow(end.view(), target)) {
        return end;
    }
    return (std::filesystem::path(target) / end.view()).lexically_normal().string();
}

} // namespace

bool isConflicted(const StatusEntry& entry) noexcept {
    return entry.isTreeConflict || entry.item.view() == "conflicted" ||
           entry.properties.view() == "conflicted";
}

bool isLocallyChanged(const StatusEntry& entry) noexcept {
    return isConflicted(entry) || entry.properties.view() == "modified" ||
           isOneOf(entry.item, {"modified", "added", "deleted", "replaced", "missing", "incomplete",
                                "obstructed"});
}

bool isIncoming(const StatusEntry& entry) noexcept {
    return !isOneOf(entry.incomingItem, {"", "none", "normal"}) ||
           !isOneOf(entry.incomingProperties, {"", "none", "normal"});
}

bool isUnchanged(const StatusEntry& entry) noexcept {
    return isOneOf(entry.item, {"normal", "none"}) && !isLocallyChanged(entry) &&
           !isIncoming(entry) && entry.changelist.isNil() && entry.lock == nullptr &&
           entry.repositoryLock == nullptr && !entry.isCopied && !entry.isSwitched &&
           !entry.isFileExternal && !entry.isWorkingCopyLocked;
}

struct StatusFactsReader::State {
    State()
        : reader(
              {"target|changelist", "entry|against"},
              [this](const XMLElement& record, std::size_t) { takeRecord(record); },
              [this](const XMLElement& container, std::size_t) { begin(container); }) {}

    void begin(const XMLElement& container) {
        TextTaker texts(facts.unreadable);
        const bool isTarget = container.name() == "target";
        changelist = isTarget ? String() : texts.take(container.attribute("name"));
        if (isTarget) {
            const auto path = container.attribute("path");
            targets.push_back(ForbiddenCharacters::restored(path.value_or("")));
        }
    }

    /// The target that an entry was told for; in a changelist, the deepest that holds it.
    std::string_view targetOf(std::string_view path) const {
        std::string_view deepest = targets.empty() ? std::string_view() : targets.back();
        if (changelist.isNil()) {
            return deepest;
        }
        deepest = {};
        for (const std::string& target : targets) {
            const bool holds = target == "." || isAtOrBelow(path, target);
            deepest = holds && target.size() >= deepest.size() ? target : deepest;
        }
        return deepest;
    }

    void takeRecord(const XMLElement& record) {
        if (record.name() == "against") {
            facts.against = numberIn(record.attribute("revision"));
            return;
        }
        TextTaker texts(facts.unreadable);
        StatusEntry entry;
        entry.path = texts.takePath(record.attribute("path"));
        entry.changelist = changelist;
        if (const auto status = record.firstChild("wc-status")) {
            takeWorkingCopyStatus(*status, texts, entry);
        }
        if (const auto status = record.firstChild("repos-status")) {
            takeRepositoryStatus(*status, texts, entry);
        }
        const std::string_view target = targetOf(entry.path.view());
        entry.movedFrom = fromTarget(entry.movedFrom, target);
        entry.movedTo = fromTarget(entry.movedTo, target);
        facts.entries.push_back(std::move(entry));
    }

    StatusFacts facts;
    String changelist;
    std::vector<std::string> targets;
    TolerantReportReader reader;
};

StatusFactsReader::StatusFactsReader() : state_(std::make_unique<State>()) {}
StatusFactsReader::StatusFactsReader(StatusFactsReader&&) noexcept = default;
StatusFactsReader& StatusFactsReader::operator=(StatusFactsReader&&) noexcept = default;
StatusFactsReader::~StatusFactsReader() = default;

void StatusFactsReader::take(std::string_view piece) {
    state_->reader.take(piece);
}

Error StatusFactsReader::finish() {
    return state_->reader.finish();
}

const StatusFacts& StatusFactsReader::facts() const noexcept {
    return state_->facts;
}

StatusFacts StatusFactsReader::takeFacts() {
    return std::exchange(state_->facts, {});
}

} // namespace quen
