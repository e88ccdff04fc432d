#include "Tools/Commands/Report/HistoryCollector.h"

#include "Tools/Commands/Changes/Summaries.h"
#include "Tools/Commands/History/HistoryFilter.h"

namespace quen::tools {

HistoryCollector::HistoryCollector(const ProjectLayout& layout, const ReportLimits& limits,
                                   ReportFacts& facts)
    : layout_(layout), limits_(limits), facts_(facts) {
    indexOfBranch(layout.trunk());
}

ReportIndex HistoryCollector::indexOfPath(const std::string& path) {
    const auto [place, isNew] = paths_.emplace(path, static_cast<ReportIndex>(facts_.paths.size()));
    if (isNew) {
        facts_.paths.push_back(path);
        counts_.push_back(0);
    }
    return place->second;
}

ReportIndex HistoryCollector::indexOfAuthor(const String& author) {
    if (author.isEmpty()) {
        return nowhere;
    }
    const auto [place, isNew] =
        authors_.emplace(author.str(), static_cast<ReportIndex>(facts_.authors.size()));
    if (isNew) {
        facts_.authors.push_back(author.str());
    }
    return place->second;
}

ReportIndex HistoryCollector::indexOfBranch(const std::string& branch) {
    const auto [place, isNew] =
        branches_.emplace(branch, static_cast<ReportIndex>(facts_.branches.size()));
    if (isNew) {
        ReportBranch facts;
        facts.name = layout_.nameOf(branch);
        facts_.branches.push_back(std::move(facts));
    }
    return place->second;
}

/// A name may have been used twice; the younger branch is the one that is told of.
void HistoryCollector::addBranchEvent(const HistoryPath& path, ReportIndex branch,
                                      std::int64_t revision) {
    const std::string from =
        path.copiedFrom.isNil() ? std::string() : layout_.branchOf(path.copiedFrom.view());
    const ReportIndex origin = from.empty() ? nowhere : indexOfBranch(from);
    ReportBranch& facts = facts_.branches[static_cast<std::size_t>(branch)];
    if (facts.created) {
        return;
    }
    if (path.action == 'D' && !facts.deleted) {
        facts.deleted = revision;
    } else if (path.action == 'A' || path.action == 'R') {
        facts.created = revision;
        facts.from = origin;
        facts.fromRevision = path.copiedFromRevision;
    }
}

void HistoryCollector::addPath(const HistoryPath& path, ReportRevision& revision) {
    const std::string branch = layout_.branchOf(path.path.view());
    if (!branch.empty()) {
        const ReportIndex index = indexOfBranch(branch);
        revision.branch = revision.branch == nowhere ? index : revision.branch;
        if (path.path.view() == branch) {
            addBranchEvent(path, index, revision.number);
            const bool isNew = candidates_.empty() || candidates_.back() != revision.number;
            if (path.action == 'M' && isNew) {
                candidates_.push_back(revision.number);
            }
        }
    }
    ++revision.changeCount;
    const bool hasRoom =
        revision.changes.size() < limits_.changesOfOne && changes_ < limits_.changes;
    if (hasRoom) {
        const ReportIndex index =
            indexOfPath(layout_.shortened(path.path.view()) + (path.kind == "dir" ? "/" : ""));
        ++counts_[static_cast<std::size_t>(index)];
        ++changes_;
        revision.changes.emplace_back(index, path.action);
    }
}

bool HistoryCollector::add(const HistoryEntry& entry) {
    isFull_ = facts_.revisions.size() >= static_cast<std::size_t>(limits_.revisions);
    if (isFull_) {
        return false;
    }
    ReportRevision revision;
    revision.number = entry.commit.revision.value_or(0);
    revision.date = dateOf(entry.commit);
    revision.author = indexOfAuthor(entry.commit.author);
    revision.message = entry.message;
    for (const HistoryPath& path : entry.paths) {
        addPath(path, revision);
    }
    if (revision.changes.size() < revision.changeCount) {
        ++cutRevisions_;
    }
    facts_.revisions.push_back(std::move(revision));
    return true;
}

void HistoryCollector::finish() {
    if (isFull_) {
        facts_.leftOut.push_back("Revisions older than r" +
                                 std::to_string(facts_.revisions.back().number) +
                                 "; --limit N takes N revisions.");
    }
    if (cutRevisions_ > 0) {
        facts_.leftOut.push_back("Some of the paths of " + counted(cutRevisions_, "revision") +
                                 " with very many; their number counts all of them.");
    }
}

} // namespace quen::tools
