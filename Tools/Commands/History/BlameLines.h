#pragma once

#include "Host/Facts/HistoryFacts.h"
#include "Tools/Commands/Places/RevisionArguments.h"
#include "Tools/Commands/Places/SourceTreeFinder.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace quen::tools {

/// The number of a line that no revision is known for.
constexpr std::int64_t noRevision = -1;

/// Who changed the lines of a file last, kept small: a revision of many lines is kept once.
class BlameLines {
public:
    void add(const CommitFacts& commit);

    std::size_t count() const { return numbers_.size(); }
    /// By line, from 0.
    const std::vector<std::int64_t>& numbers() const { return numbers_; }
    const std::map<std::int64_t, CommitFacts>& commits() const { return commits_; }
    const CommitFacts& commitOf(std::size_t index) const { return commits_.at(numbers_[index]); }

    /// An ignored revision changed the line last; `commit` did before it, or nobody, where it is
    /// that revision itself.
    void passOver(std::size_t index, std::int64_t ignored, const CommitFacts& commit);
    /// The ignored revision that changed the line last; absent for none.
    std::optional<std::int64_t> ignoredAt(std::size_t index) const;
    /// Whether it is ignored in vain: nothing stood there before.
    bool staysIgnored(std::size_t index) const { return ignoredAt(index) == numbers_[index]; }

private:
    std::vector<std::int64_t> numbers_;
    std::map<std::int64_t, CommitFacts> commits_;
    std::unordered_map<std::size_t, std::int64_t> ignored_;
};

/// What the client is asked for the lines of a file; without revisions as it stands here.
QuenSourceControlRequestPtr blameRequest(const SourceTree& source, const std::string& path,
                                         const RevisionRange& revisions);

/// Reads them. The exit status; what went wrong has been told.
int readBlame(Session& session, const QuenSourceControlRequestPtr& request, BlameLines& lines);

} // namespace quen::tools
