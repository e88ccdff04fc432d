#pragma once

#include "Tools/Commands/CommandLine/Subcommand.h"
#include "Tools/Commands/History/BlameLines.h"

#include <cstdint>
#include <set>
#include <string>

namespace quen::tools {

/// Revisions that a blame looks behind, such as one that only set blanks anew.
struct IgnoredRevisions {
    std::set<std::int64_t> numbers;

    /// `--ignore-rev` and `--ignore-revs-file`.
    void addTo(Subcommand& command);
};

/// Reads a file of revisions to ignore, one a line; `#` begins a comment. What is wrong, with the
/// line, as a sentence; empty where nothing is.
std::string readIgnoredRevisions(const std::string& path, std::set<std::int64_t>& numbers);

/// A file as it was blamed.
struct BlamedFile {
    std::string path;
    RevisionRange revisions;
};

/// Gives the lines that an ignored revision changed last to those who changed them before: the
/// lines that it replaced, one by one; blanks count for nothing there. A line that stands where
/// nothing stood before stays with the ignored revision. The exit status; what went wrong has been
/// told.
///
/// Runs the client three times for each ignored revision that is the last one of some line.
int passOverIgnored(Session& session, const SourceTree& source, const BlamedFile& file,
                    const IgnoredRevisions& ignored, BlameLines& lines);

} // namespace quen::tools
