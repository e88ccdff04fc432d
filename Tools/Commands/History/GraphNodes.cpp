#include "Tools/Commands/History/GraphNodes.h"

#include <algorithm>
#include <map>
#include <utility>

namespace quen::tools {

namespace {

/// The path that a branch was made by, which tells what it was copied from; null for none.
const HistoryPath* creationOf(const HistoryEntry& entry, const ProjectLayout& layout) {
    const auto found =
        std::find_if(entry.paths.begin(), entry.paths.end(), [&](const HistoryPath& path) {
            return (path.action == 'A' || path.action == 'R') &&
                   path.path.view() == layout.branchOf(path.path.view()) && !path.path.isEmpty();
        });
    return found == entry.paths.end() ? nullptr : &*found;
}

/// A branch that was made in the revision, otherwise the first that it changed.
std::string branchOf(const HistoryEntry& entry, const ProjectLayout& layout) {
    if (const HistoryPath* const creation = creationOf(entry, layout)) {
        return creation->path.str();
    }
    for (const HistoryPath& path : entry.paths) {
        if (std::string branch = layout.branchOf(path.path.view()); !branch.empty()) {
            return branch;
        }
    }
    return {};
}

/// What the revision stands on, merges aside.
void addPrevious(GraphNode& node, const ProjectLayout& layout) {
    const HistoryPath* const creation = creationOf(node.entry, layout);
    if (creation == nullptr) {
        node.parents.push_back({node.branch, node.revision - 1});
        node.hasPrevious = true;
        return;
    }
    const std::string origin =
        creation->copiedFrom.isNil() ? "" : layout.branchOf(creation->copiedFrom.view());
    if (!origin.empty()) {
        node.parents.push_back({origin, creation->copiedFromRevision.value_or(node.revision - 1)});
        node.hasPrevious = true;
    }
}

/// Of each branch that was merged, the youngest revision.
void addMerged(GraphNode& node, const ProjectLayout& layout) {
    std::map<std::string, std::int64_t> merged;
    for (const HistoryEntry& entry : node.entry.merged) {
        const std::string from = branchOf(entry, layout);
        if (!from.empty() && from != node.branch) {
            merged[from] = std::max(merged[from], entry.commit.revision.value_or(0));
        }
    }
    for (const auto& [branch, revision] : merged) {
        node.parents.push_back({branch, revision});
    }
}

bool isMetBy(const GraphParent& parent, const GraphNode& node) {
    return node.branch == parent.branch && node.revision <= parent.upTo;
}

} // namespace

GraphNode graphNode(HistoryEntry entry, const ProjectLayout& layout) {
    GraphNode node;
    node.entry = std::move(entry);
    node.revision = node.entry.commit.revision.value_or(0);
    node.branch = branchOf(node.entry, layout);
    if (!node.branch.empty()) {
        addPrevious(node, layout);
        addMerged(node, layout);
    }
    node.entry.merged.clear();
    return node;
}

bool mayBeMerge(const HistoryEntry& entry, const ProjectLayout& layout) {
    return std::any_of(entry.paths.begin(), entry.paths.end(), [&](const HistoryPath& path) {
        return path.action == 'M' && !path.path.isEmpty() &&
               path.path.view() == layout.branchOf(path.path.view());
    });
}

bool GraphQueue::isSettled() {
    GraphNode& first = nodes_.front();
    for (; seen_ < nodes_.size(); ++seen_) {
        for (GraphParent& parent : first.parents) {
            if (!parent.revision && isMetBy(parent, nodes_[seen_])) {
                parent.revision = nodes_[seen_].revision;
            }
        }
    }
    return std::all_of(first.parents.begin(), first.parents.end(), [&](const GraphParent& parent) {
        return parent.revision || (!needsAll_ && parent.branch == first.branch);
    });
}

std::optional<GraphNode> GraphQueue::take() {
    if (nodes_.empty() || (!isSettled() && !isOver_ && nodes_.size() <= lookahead_)) {
        return std::nullopt;
    }
    GraphNode node = std::move(nodes_.front());
    nodes_.pop_front();
    seen_ = 1;
    return node;
}

std::optional<std::int64_t> GraphQueue::nextOn(const std::string& branch) const {
    const auto found = std::find_if(nodes_.begin(), nodes_.end(),
                                    [&](const GraphNode& node) { return node.branch == branch; });
    return found == nodes_.end() ? std::nullopt : std::optional(found->revision);
}

} // namespace quen::tools
