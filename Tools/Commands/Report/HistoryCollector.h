#pragma once

#include "Host/Facts/HistoryFacts.h"
#include "Tools/Commands/Places/ProjectLayout.h"
#include "Tools/Commands/Report/ReportFacts.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace quen::tools {

/// Makes of a history, the youngest revision first, what a report knows of revisions, authors,
/// paths and branches.
class HistoryCollector {
public:
    /// All three must outlive it.
    HistoryCollector(const ProjectLayout& layout, const ReportLimits& limits, ReportFacts& facts);

    /// False when the report holds as many revisions as it may; the entry is left out then.
    bool add(const HistoryEntry& entry);
    /// Notes what was left out; call once, at the end.
    void finish();

    /// The revisions that may be merges, the youngest first: they changed the properties of a
    /// branch.
    const std::vector<std::int64_t>& mergeCandidates() const { return candidates_; }
    /// How often each path was changed, by its index.
    const std::vector<std::size_t>& changeCounts() const { return counts_; }

private:
    ReportIndex indexOfPath(const std::string& path);
    ReportIndex indexOfAuthor(const String& author);
    ReportIndex indexOfBranch(const std::string& branch);
    void addPath(const HistoryPath& path, ReportRevision& revision);
    void addBranchEvent(const HistoryPath& path, ReportIndex branch, std::int64_t revision);

    const ProjectLayout& layout_;
    const ReportLimits& limits_;
    ReportFacts& facts_;
    std::unordered_map<std::string, ReportIndex> paths_;
    std::unordered_map<std::string, ReportIndex> authors_;
    std::unordered_map<std::string, ReportIndex> branches_;
    std::vector<std::size_t> counts_;
    std::vector<std::int64_t> candidates_;
    std::size_t changes_ = 0;
    std::size_t cutRevisions_ = 0;
    bool isFull_ = false;
};

} // namespace quen::tools
