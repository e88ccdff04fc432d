#pragma once

#include "Foundation/Value.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace quen::tools {

/// What is looked at for a report, so that a large project has one too.
struct ReportLimits {
    std::int64_t revisions = 10'000;
    /// Of all revisions together, and of one.
    std::size_t changes = 200'000;
    std::size_t changesOfOne = 200;
    std::size_t merges = 200;
    std::uint32_t blamedFiles = 50;
    /// In bytes; larger ones are not blamed.
    std::int64_t blamedSize = 1'000'000;
};

/// An index into one of the lists of `ReportFacts`; `nowhere` for none.
using ReportIndex = std::int64_t;
constexpr ReportIndex nowhere = -1;

struct ReportRevision {
    std::int64_t number = 0;
    std::optional<Date> date;
    ReportIndex author = nowhere;
    String message;
    /// Paths with the client's letter for what was done; of a large revision the first ones.
    std::vector<std::pair<ReportIndex, char>> changes;
    std::size_t changeCount = 0;
    ReportIndex branch = nowhere;
};

struct ReportBranch {
    std::string name;
    /// The branch and revision that it was copied from.
    ReportIndex from = nowhere;
    std::optional<std::int64_t> fromRevision;
    std::optional<std::int64_t> created;
    std::optional<std::int64_t> deleted;
};

/// What a revision merged: `last` is the youngest revision of `from` that it brought.
struct ReportMerge {
    std::int64_t revision = 0;
    ReportIndex into = nowhere;
    ReportIndex from = nowhere;
    std::int64_t last = 0;
};

/// How many lines of a file were changed last in each revision.
struct ReportAges {
    std::string path;
    std::map<std::int64_t, std::int64_t> lines;
};

/// Everything that a report shows of a project.
struct ReportFacts {
    std::string title;
    std::string url;
    std::vector<std::string> authors;
    /// Below the project; those of directories end in a slash.
    std::vector<std::string> paths;
    /// The first one is the trunk.
    std::vector<ReportBranch> branches;
    /// The youngest first.
    std::vector<ReportRevision> revisions;
    std::vector<ReportMerge> merges;
    std::vector<ReportAges> ages;
    /// In the trunk today.
    std::size_t files = 0;
    /// What is not in it, in sentences.
    std::vector<std::string> leftOut;
};

} // namespace quen::tools
