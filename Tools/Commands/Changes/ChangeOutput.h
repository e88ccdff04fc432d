#pragma once

#include "Foundation/Lines.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace quen::tools {

/// Whether a line of the client's tells of one item that it worked on: `A    a.c`, ` U   .`,
/// `   C src`, `Sending        a.c`, `Reverted 'a.c'`, `Merge conflict in 'a.c' marked as
/// resolved.` Wording and columns are those of clients 1.7 to 1.14.
bool tellsOfItem(std::string_view line);

/// What the client says on standard output while it changes something, read line by line. The
/// results of changes hold little or nothing, so this is what a person can be told beyond them.
class ChangeOutput {
public:
    /// The next piece of the output; lines may be cut anywhere.
    void take(std::string_view piece);

    /// How many items it named. Where a merge records what it merged is not counted.
    std::size_t items() const noexcept { return items_; }
    /// The last finished line that is not blank.
    const std::string& lastLine() const noexcept { return lastLine_; }
    /// The number in the last sentence about a revision (`Updated to revision 12.`); empty where
    /// there was none.
    const std::string& revision() const noexcept { return revision_; }
    /// What a commit's hooks said after it, a line each: the client warns of it, and all is well
    /// for it. Empty where there was nothing.
    const std::string& warning() const noexcept { return warning_; }

    /// How far a commit has come.
    enum class Commit {
        notBegun,
        /// All was sent and the server is at work: from outside nobody can tell whether it is made.
        underWay,
        made,
    };
    Commit commit() const noexcept { return commit_; }

private:
    /// No line about an item or a revision is longer.
    static constexpr std::size_t longestLine = 64 * 1024;

    void takeLine(std::string_view line);
    bool takeCommitLine(std::string_view line);

    LineAssembler lines_{longestLine};
    std::string lastLine_;
    std::string revision_;
    std::size_t items_ = 0;
    std::string warning_;
    Commit commit_ = Commit::notBegun;
    bool isRecordingMerge_ = false;
};

} // namespace quen::tools
