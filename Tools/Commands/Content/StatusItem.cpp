#include "Tools/Commands/Content/StatusItem.h"

#include "QuenFoundation/QuenSourceControlStatus.h"
#include "Tools/Commands/Changes/Summaries.h"
#include "Tools/Terminal/SafeText.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace quen::tools {

namespace {

struct Word {
    std::string_view client;
    std::uint32_t flag;
    char letter;
};

constexpr std::array itemFlags{
    Word{"modified", QuenSourceControlStatusModified, 'M'},
    Word{"unversioned", QuenSourceControlStatusUnversioned, '?'},
    Word{"missing", QuenSourceControlStatusMissing, '!'},
    Word{"incomplete", QuenSourceControlStatusMissing, '!'},
    Word{"added", QuenSourceControlStatusAdded, 'A'},
    Word{"deleted", QuenSourceControlStatusDeleted, 'D'},
    Word{"conflicted", QuenSourceControlStatusConflicted, 'C'},
    Word{"ignored", QuenSourceControlStatusIgnored, 'I'},
    Word{"replaced", QuenSourceControlStatusReplaced, 'R'},
    Word{"obstructed", QuenSourceControlStatusObstructed, '~'},
    Word{"external", QuenSourceControlStatusNone, 'X'},
};

std::uint32_t flagOf(std::string_view word) noexcept {
    const auto* const found = std::find_if(itemFlags.begin(), itemFlags.end(),
                                           [&](const Word& each) { return each.client == word; });
    return found == itemFlags.end() ? QuenSourceControlStatusNone : found->flag;
}

bool isAbsent(const String& word) noexcept {
    return word.isEmpty() || word.view() == "none";
}

/// What has no flag in the contract.
std::vector<StatusWord> furtherWords(const StatusEntry& entry) {
    std::vector<StatusWord> words;
    if (entry.isWorkingCopyLocked) {
        words.push_back({"working copy locked", Style::bad});
    }
    if (entry.isSwitched) {
        words.push_back({"switched", Style::warning});
    }
    if (entry.isFileExternal || entry.item.view() == "external") {
        words.push_back({"external", Style::faint});
    }
    return words;
}

std::vector<StatusWord> wordsHere(const StatusEntry& entry) {
    std::vector<StatusWord> words;
    if (entry.isTreeConflict) {
        words.push_back({"tree conflict", Style::bad});
    }
    const bool isIncomplete = entry.item.view() == "incomplete";
    for (StatusWord& word : wordsForStatus(workingCopyFlags(entry))) {
        if (isIncomplete && word.text == "missing") {
            word.text = "incomplete";
        }
        words.push_back(std::move(word));
    }
    for (StatusWord& word : furtherWords(entry)) {
        words.push_back(std::move(word));
    }
    if (words.empty() && (entry.lock != nullptr || entry.repositoryLock != nullptr)) {
        words.push_back({"locked", Style::warning});
    }
    if (words.empty()) {
        words.push_back(isAbsent(entry.item) ? StatusWord{"not here", Style::faint}
                                             : StatusWord{"unchanged", Style::faint});
    }
    return words;
}

std::vector<StatusWord> wordsIncoming(const StatusEntry& entry) {
    std::vector<StatusWord> words = wordsForStatus(repositoryFlags(entry));
    if (entry.incomingProperties.view() == "modified") {
        words.push_back({"properties modified", Style::warning});
    }
    return words;
}

std::string lockNote(const std::string& kind, const LockFacts& lock) {
    std::string note = kind;
    if (!lock.owner.isEmpty()) {
        note += " by " + printable(lock.owner.view());
    }
    return lock.comment.isEmpty() ? note : note + ": " + printable(lock.comment.view());
}

/// Whether the lock that is held here still is the repository's is known after a remote status.
void noteLocks(const StatusEntry& entry, bool hasAskedRepository, std::vector<std::string>& notes) {
    const auto& here = entry.lock;
    const auto& there = entry.repositoryLock;
    if (here == nullptr) {
        if (there != nullptr) {
            notes.push_back(lockNote("locked elsewhere", *there));
        }
    } else if (!hasAskedRepository || (there != nullptr && there->token == here->token)) {
        notes.push_back(lockNote("locked here", *here));
    } else if (there != nullptr) {
        notes.push_back(lockNote("lock taken over", *there));
    } else {
        notes.push_back(lockNote("lock lost, held here", *here));
    }
}

/// So that a directory comes right before what it holds.
bool isBefore(const StatusEntry& a, const StatusEntry& b) noexcept {
    const auto rank = [](char c) { return c == '/' ? 0 : 1 + static_cast<unsigned char>(c); };
    const std::string_view one = a.path.view();
    const std::string_view other = b.path.view();
    if (one == "." || other == ".") {
        return one == "." && other != ".";
    }
    return std::lexicographical_compare(one.begin(), one.end(), other.begin(), other.end(),
                                        [&](char x, char y) { return rank(x) < rank(y); });
}

template <typename Counts> std::string joinedCounts(const Counts& counts) {
    std::string text;
    for (const auto& each : counts) {
        text += text.empty() ? "" : ", ";
        text.append(std::to_string(each.count)).append(" ").append(each.word);
    }
    return text;
}

} // namespace

std::string StatusItem::described() const {
    std::string text;
    for (const std::string& note : notes) {
        text.append(text.empty() ? "  (" : "; ").append(note);
    }
    return path + (text.empty() ? "" : text + ")");
}

StatusItem statusItem(const StatusEntry& entry, const std::string& reason,
                      bool hasAskedRepository) {
    StatusItem item;
    item.path = printable(entry.path.view());
    item.here = wordsHere(entry);
    item.incoming = wordsIncoming(entry);
    item.changelist = printable(entry.changelist.view());
    item.isIgnored = entry.item.view() == "ignored" && item.here.size() == 1 &&
                     item.incoming.empty() && item.changelist.empty();
    if (!reason.empty()) {
        item.notes.push_back(printable(reason));
    }
    if (!entry.movedFrom.isNil()) {
        item.notes.push_back("moved from " + printable(entry.movedFrom.view()));
    }
    if (!entry.movedTo.isNil()) {
        item.notes.push_back("moved to " + printable(entry.movedTo.view()));
    }
    noteLocks(entry, hasAskedRepository, item.notes);
    return item;
}

std::string statusLetters(const StatusEntry& entry) {
    const auto* const found =
        std::find_if(itemFlags.begin(), itemFlags.end(),
                     [&](const Word& each) { return each.client == entry.item.view(); });
    const char item = entry.isTreeConflict ? 'C' : found == itemFlags.end() ? ' ' : found->letter;
    const char properties = entry.properties.view() == "modified"     ? 'M'
                            : entry.properties.view() == "conflicted" ? 'C'
                                                                      : ' ';
    return {item, properties};
}

std::string joinedWords(const std::vector<StatusWord>& words) {
    std::string text;
    for (const StatusWord& word : words) {
        text.append(text.empty() ? "" : ", ").append(word.text);
    }
    return text;
}

std::uint32_t workingCopyFlags(const StatusEntry& entry) noexcept {
    const bool isCopy = entry.isCopied && entry.item.view() == "added";
    const std::uint32_t item =
        isCopy ? std::uint32_t{QuenSourceControlStatusAddedWithHistory} : flagOf(entry.item.view());
    const std::string_view properties = entry.properties.view();
    if (properties == "modified") {
        return item | QuenSourceControlStatusPropertiesModified;
    }
    return properties == "conflicted" ? item | QuenSourceControlStatusPropertiesConflicted : item;
}

std::uint32_t repositoryFlags(const StatusEntry& entry) noexcept {
    const std::string_view word = entry.incomingItem.view();
    if (word == "modified") {
        return QuenSourceControlStatusModifiedInRepository;
    }
    return word == "added" || word == "deleted" || word == "replaced"
               ? flagOf(word)
               : std::uint32_t{QuenSourceControlStatusNone};
}

void sortByPath(std::vector<StatusEntry>& entries) {
    std::stable_sort(entries.begin(), entries.end(), isBefore);
    const auto isSame = [](const StatusEntry& a, const StatusEntry& b) { return a.path == b.path; };
    entries.erase(std::unique(entries.begin(), entries.end(), isSame), entries.end());
}

void StatusSummary::add(std::vector<Count>& counts, const std::string& word) {
    const auto known = std::find_if(counts.begin(), counts.end(),
                                    [&](const Count& each) { return each.word == word; });
    if (known == counts.end()) {
        counts.push_back({word, 1});
    } else {
        ++known->count;
    }
}

void StatusSummary::count(const StatusItem& item) {
    ++items_;
    const std::string changedThere = "changed in the repository";
    const std::string& first = item.here.front().text;
    const bool isOnlyIncoming =
        !item.incoming.empty() && (first == "unchanged" || first == "not here");
    add(kinds_, isOnlyIncoming ? changedThere : first);
    for (std::size_t i = 1; i < item.here.size(); ++i) {
        add(also_, item.here[i].text);
    }
    if (!item.incoming.empty() && !isOnlyIncoming) {
        add(also_, changedThere);
    }
}

std::string StatusSummary::text() const {
    return counted(items_, "item") + ": " + joinedCounts(kinds_) +
           (also_.empty() ? "" : "; also: " + joinedCounts(also_));
}

} // namespace quen::tools
