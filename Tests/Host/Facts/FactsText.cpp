#include "Tests/Host/Facts/FactsText.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <stdexcept>

namespace quen::test {

namespace {

void append(std::string& line, std::string_view name, const String& text) {
    if (!text.isNil()) {
        line += " " + std::string(name) + "=" + text.str();
    }
}

void append(std::string& line, std::string_view name, const std::optional<std::int64_t>& number) {
    if (number) {
        line += " " + std::string(name) + "=" + std::to_string(*number);
    }
}

void append(std::string& line, std::string_view name, bool flag) {
    line += flag ? " " + std::string(name) : "";
}

void append(std::string& line, std::string_view name,
            const std::shared_ptr<const LockFacts>& lock) {
    if (lock != nullptr) {
        line += " " + std::string(name) + "=" + lock->owner.str() + ":" + lock->comment.str();
    }
}

void append(std::string& line, std::string_view name, ConflictState state) {
    if (state != ConflictState::none) {
        line += " " + std::string(name) + (state == ConflictState::left ? " left" : " settled");
    }
}

std::string nameOf(ItemAction action) {
    constexpr std::array names = {"none",     "added",    "deleted",  "updated",
                                  "merged",   "existed",  "replaced", "conflicted",
                                  "restored", "reverted", "sent"};
    return names.at(static_cast<std::size_t>(action));
}

void append(std::vector<std::string>& lines, std::string_view name, const ConflictCount& count) {
    if (count != ConflictCount()) {
        lines.push_back(std::string(name) + ": " + std::to_string(count.remaining) +
                        " remaining, " + std::to_string(count.resolved) + " resolved");
    }
}

void append(std::vector<std::string>& lines, std::string_view name,
            const std::vector<ReachedPlace>& places) {
    for (const ReachedPlace& place : places) {
        std::string line = std::string(name) + " " + (place.path.isNil() ? "-" : place.path.str());
        append(line, "r", place.revision);
        lines.push_back(line);
    }
}

} // namespace

std::string lineOf(const StatusEntry& entry) {
    std::string line = entry.path.str() + ": " + entry.item.str() + " " + entry.properties.str();
    append(line, "r", entry.revision);
    append(line, "last", entry.commit.revision);
    append(line, "by", entry.commit.author);
    append(line, "changelist", entry.changelist);
    append(line, "incoming", entry.incomingItem);
    append(line, "incomingProperties", entry.incomingProperties);
    append(line, "movedFrom", entry.movedFrom);
    append(line, "movedTo", entry.movedTo);
    append(line, "lock", entry.lock);
    append(line, "repositoryLock", entry.repositoryLock);
    append(line, "copied", entry.isCopied);
    append(line, "switched", entry.isSwitched);
    append(line, "fileExternal", entry.isFileExternal);
    append(line, "workingCopyLocked", entry.isWorkingCopyLocked);
    append(line, "treeConflict", entry.isTreeConflict);
    return line;
}

std::vector<std::string> linesOf(const StatusFacts& facts) {
    std::vector<std::string> lines;
    for (const StatusEntry& entry : facts.entries) {
        lines.push_back(lineOf(entry));
    }
    // The client's order varies from run to run.
    std::sort(lines.begin(), lines.end());
    return lines;
}

std::string lineOf(const UnreadableText& unreadable) {
    constexpr std::array names = {"path ", "author ", "other "};
    return names.at(static_cast<std::size_t>(unreadable.kind)) + unreadable.text.str() + " of " +
           unreadable.path.str();
}

std::string lineOf(const ChangedItem& item) {
    std::string line = nameOf(item.text) + " " + item.path.str();
    line += item.properties == ItemAction::none ? "" : " properties " + nameOf(item.properties);
    append(line, "treeConflict", item.isTreeConflict);
    append(line, "belowTreeConflict", item.isBelowTreeConflict);
    append(line, "lockBroken", item.isLockBroken);
    return line + (item.external ? " external " + std::to_string(*item.external) : "");
}

std::string lineOf(const ConflictFacts& conflict) {
    std::string line = conflict.path.str() + ":";
    append(line, "text", conflict.text);
    append(line, "properties", conflict.properties);
    append(line, "tree", conflict.tree);
    append(line, "unspecified", conflict.unspecified);
    for (const String& name : conflict.settledProperties) {
        line += " (" + name.str() + ")";
    }
    return line + (conflict.external ? " external " + std::to_string(*conflict.external) : "");
}

std::vector<std::string> linesOf(const std::vector<ConflictFacts>& conflicts) {
    std::vector<std::string> lines;
    for (const ConflictFacts& conflict : conflicts) {
        lines.push_back(lineOf(conflict));
    }
    return lines;
}

std::vector<std::string> linesOf(const ChangeFacts& facts) {
    std::vector<std::string> lines;
    for (const ChangedItem& item : facts.items) {
        lines.push_back(lineOf(item));
    }
    for (const ConflictFacts& conflict : facts.conflicts) {
        lines.push_back("conflict " + lineOf(conflict));
    }
    for (const SkippedItem& item : facts.skipped) {
        lines.push_back("skipped " + item.path.str() + ": " + item.reason.str());
    }
    append(lines, "target", facts.targets);
    append(lines, "external", facts.externals);
    for (const String& path : facts.removedExternals) {
        lines.push_back("removed external " + path.str());
    }
    for (const MergedRange& range : facts.merges) {
        std::string line =
            (range.isReverse ? "reverse merge into " : "merge into ") + range.into.str();
        append(line, "first", range.first);
        append(line, "last", range.last);
        lines.push_back(line);
    }
    append(lines, "text conflicts", facts.textConflicts);
    append(lines, "property conflicts", facts.propertyConflicts);
    append(lines, "tree conflicts", facts.treeConflicts);
    if (facts.revision) {
        lines.push_back("revision " + std::to_string(*facts.revision));
    }
    for (const String& line : facts.unknownLines) {
        lines.push_back("unknown: " + line.str());
    }
    return lines;
}

std::vector<std::string_view> piecesOf(std::string_view text, std::size_t size) {
    std::vector<std::string_view> pieces;
    while (!text.empty()) {
        pieces.push_back(text.substr(0, size));
        text.remove_prefix(std::min(size, text.size()));
    }
    return pieces;
}

std::vector<std::string> captures(std::string_view directory, std::string_view ending) {
    const std::filesystem::path root = QUEN_TEST_DATA_DIRECTORY;
    std::vector<std::string> found;
    for (const auto& each : std::filesystem::directory_iterator(root / directory)) {
        if (each.path().string().ends_with(ending)) {
            found.push_back(std::filesystem::relative(each.path(), root).string());
        }
    }
    if (found.empty()) {
        throw std::runtime_error("There are no captures in " + std::string(directory) + ".");
    }
    std::sort(found.begin(), found.end());
    return found;
}

} // namespace quen::test
