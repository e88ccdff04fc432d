#pragma once

#include "Tools/Commands/History/BranchGraph.h"
#include "Tools/Commands/History/HistoryFilter.h"
#include "Tools/Commands/Session/Session.h"

#include <cstdint>
#include <functional>

namespace quen::tools {

/// The history of a project with its branches and merges, the youngest revision first.
struct GraphQuery {
    /// Of what the filter admits; 0 for any number.
    std::int64_t limit = 0;
    HistoryFilter filter;
    /// Whether all parents of a revision must be known before it is handed over, also those that
    /// lie far back.
    bool needsParents = false;
};

/// Takes one revision; those that the filter does not admit too, since lines lead through them.
/// False when no more are wanted.
using GraphTaker =
    std::function<bool(const GraphNode& node, bool isShown, const BranchGraph::NextOn& nextOn)>;

/// Reads page by page, so that memory does not grow with the history. The log itself tells of
/// branches; what was merged is asked for once a page. The exit status.
int readGraph(Session& session, const SourceTree& source, const ProjectLayout& layout,
              const GraphQuery& query, const GraphTaker& take);

} // namespace quen::tools
