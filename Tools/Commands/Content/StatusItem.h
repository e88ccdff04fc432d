#pragma once

#include "Host/Facts/StatusFacts.h"
#include "Tools/Terminal/StatusWords.h"

#include <cstdint>
#include <string>
#include <vector>

namespace quen::tools {

/// What a person is told of one item of a status. Its texts are safe to show.
struct StatusItem {
    std::string path;
    /// What is to be said of it here, the gravest first; never empty.
    std::vector<StatusWord> here;
    /// What the repository has newer; empty where it has nothing newer.
    std::vector<StatusWord> incoming;
    /// `moved from a.c`, `locked here by alice`, ..
    std::vector<std::string> notes;
    /// Empty where it is in none.
    std::string changelist;
    /// Nothing but ignored.
    bool isIgnored = false;

    /// The path with the notes behind it.
    std::string described() const;
};

/// `reason` is the client's own word for its tree conflict, empty where none is known.
/// `hasAskedRepository` says whether the entry is one of a remote status.
StatusItem statusItem(const StatusEntry& entry, const std::string& reason, bool hasAskedRepository);

/// The words of one cell: `modified, properties modified`.
std::string joinedWords(const std::vector<StatusWord>& words);

/// The client's own letters for the item and for its properties: `M `, ` M`, `A `, `? `, `!C`.
std::string statusLetters(const StatusEntry& entry);

/// What the contract's keys hold for the entry: the flags of its status here and in the repository.
std::uint32_t workingCopyFlags(const StatusEntry& entry) noexcept;
std::uint32_t repositoryFlags(const StatusEntry& entry) noexcept;

/// Sorted as a person looks for them: by path, what a directory holds right behind it. What several
/// targets told is kept once.
void sortByPath(std::vector<StatusEntry>& entries);

/// `4 items: 2 modified, 1 added, 1 unversioned; also: 1 properties modified`. Before the semicolon
/// each item counts once.
class StatusSummary {
public:
    void count(const StatusItem& item);
    bool isEmpty() const noexcept { return items_ == 0; }
    std::string text() const;

private:
    struct Count {
        std::string word;
        std::size_t count;
    };
    static void add(std::vector<Count>& counts, const std::string& word);

    std::size_t items_ = 0;
    std::vector<Count> kinds_;
    std::vector<Count> also_;
};

} // namespace quen::tools
