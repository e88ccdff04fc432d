#pragma once

#include "Host/Facts/HistoryFacts.h"
#include "Tools/Commands/Places/ProjectLayout.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <vector>

namespace quen::tools {

/// What a revision stands on: the youngest revision of a branch up to a number.
struct GraphParent {
    /// As a path: `/trunk`.
    std::string branch;
    std::int64_t upTo = 0;
    /// Absent while it has not been read.
    std::optional<std::int64_t> revision = {};
};

/// A revision of a project with its branches and merges.
struct GraphNode {
    HistoryEntry entry;
    std::int64_t revision = 0;
    /// The branch that it was made on, as a path; empty where it was made on none.
    std::string branch;
    /// First what the branch was before it, or what the branch was copied from, if there was
    /// anything; then what was merged.
    std::vector<GraphParent> parents;
    bool hasPrevious = false;
};

/// Of an entry with its paths and with what it merged (`HistoryEntry::merged`, with paths too).
GraphNode graphNode(HistoryEntry entry, const ProjectLayout& layout);

/// Whether the revision may be a merge: only the client can tell what it merged. It changed the
/// properties of a branch's directory.
bool mayBeMerge(const HistoryEntry& entry, const ProjectLayout& layout);

/// Revisions on their way to a graph, the youngest first. Each is held back until its parents on
/// other branches have been read, so that it is known which line leads to them.
class GraphQueue {
public:
    /// At most `lookahead` revisions are held back. With `needsAll` a revision also waits for the
    /// one before it on its own branch.
    GraphQueue(std::size_t lookahead, bool needsAll) : lookahead_(lookahead), needsAll_(needsAll) {}

    void add(GraphNode node) { nodes_.push_back(std::move(node)); }
    /// None will be added any more.
    void end() { isOver_ = true; }

    /// The next one, once it is known well enough.
    std::optional<GraphNode> take();
    /// The next revision of a branch behind those that were taken; absent where it has not been
    /// read.
    std::optional<std::int64_t> nextOn(const std::string& branch) const;

private:
    bool isSettled();

    std::size_t lookahead_;
    bool needsAll_;
    bool isOver_ = false;
    std::deque<GraphNode> nodes_;
    /// How many behind the first one have been looked at for its parents.
    std::size_t seen_ = 1;
};

} // namespace quen::tools
