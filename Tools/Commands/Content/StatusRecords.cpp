#include "Tools/Commands/Content/StatusRecords.h"

#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Commands/Content/StatusItem.h"
#include "Tools/Terminal/SafeText.h"

#include <initializer_list>
#include <utility>

namespace quen::tools {

namespace {

void setText(Dictionary& record, const char* key, const String& text) {
    if (!text.isNil()) {
        record.set(key, text);
    }
}

void setNumber(Dictionary& record, const char* key, const std::optional<std::int64_t>& number) {
    if (number) {
        record.set(key, *number);
    }
}

void setFlags(Dictionary& record, std::initializer_list<std::pair<const char*, bool>> flags) {
    for (const auto& [key, isSet] : flags) {
        if (isSet) {
            record.set(key, true);
        }
    }
}

void setLock(Dictionary& record, const char* key, const std::shared_ptr<const LockFacts>& lock) {
    if (lock != nullptr) {
        Dictionary facts;
        setText(facts, "owner", lock->owner);
        setText(facts, "comment", lock->comment);
        setText(facts, "created", lock->created);
        setText(facts, "expires", lock->expires);
        record.set(key, std::move(facts));
    }
}

void setFacts(Dictionary& record, const StatusEntry& entry, const std::string& reason) {
    setText(record, "item", entry.item);
    setText(record, "properties", entry.properties);
    setText(record, "incomingItem", entry.incomingItem);
    setText(record, "incomingProperties", entry.incomingProperties);
    setText(record, "changelist", entry.changelist);
    setNumber(record, "revision", entry.revision);
    setText(record, "movedFrom", entry.movedFrom);
    setText(record, "movedTo", entry.movedTo);
    setLock(record, "lock", entry.lock);
    setLock(record, "repositoryLock", entry.repositoryLock);
    setFlags(record, {{"copied", entry.isCopied},
                      {"switched", entry.isSwitched},
                      {"fileExternal", entry.isFileExternal},
                      {"workingCopyLocked", entry.isWorkingCopyLocked}});
    if (entry.isTreeConflict) {
        record.set("treeConflict", String(reason));
    }
}

std::string ownerOf(const UnreadableText& text) {
    return text.path.isNil() ? "" : " of \"" + printable(text.path.view()) + "\"";
}

} // namespace

Dictionary statusRecord(const StatusEntry& entry, const std::string& reason) {
    Dictionary record{
        {QuenSourceControlOperationPathKey, entry.path},
        {QuenSourceControlOperationWCStatusKey, std::int64_t{workingCopyFlags(entry)}},
        {QuenSourceControlOperationRepositoryStatusKey, std::int64_t{repositoryFlags(entry)}}};
    setFacts(record, entry, reason);
    return record;
}

Dictionary shortStatusRecord(const StatusEntry& entry, const std::string& reason) {
    Dictionary record{{"path", entry.path}};
    setFacts(record, entry, reason);
    return record;
}

std::string sentenceOnUnreadable(const UnreadableText& text) {
    const std::string shown = "\"" + printable(text.text.view()) + "\"";
    switch (text.kind) {
    case UnreadableText::Kind::path:
        return "The name " + shown +
               " holds control characters, which break svn's own reports. Rename it.";
    case UnreadableText::Kind::author:
        return "The author " + shown + ownerOf(text) +
               " holds control characters, which break svn's own reports. Whoever runs the server "
               "can change svn:author.";
    case UnreadableText::Kind::other: break;
    }
    return "The text " + shown + ownerOf(text) +
           " holds control characters, which break svn's own reports.";
}

} // namespace quen::tools
