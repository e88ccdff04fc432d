#pragma once

#include "Tools/Commands/History/BranchGraph.h"

#include <string>
#include <vector>

namespace quen::tools {

/// How much is shown of each revision.
struct GraphFormat {
    bool isOneLine = false;
    bool isQuiet = false;
    /// Of the output, in cells; 0 for any width.
    std::size_t width = 0;
};

/// The graph with the revisions' texts beside it, for people.
class GraphText {
public:
    /// `layout` and `palette` must outlive it.
    GraphText(const ProjectLayout& layout, const Palette& palette, const Marks& marks,
              const GraphFormat& format, Date now);

    /// The lines of the next revision, each ended.
    std::string add(const GraphNode& node, bool isShown, const BranchGraph::NextOn& nextOn);

private:
    std::string oneLineOf(const GraphNode& node, std::size_t room) const;
    std::vector<std::string> linesOf(const GraphNode& node, std::size_t room) const;

    const ProjectLayout& layout_;
    const Palette& palette_;
    const GraphFormat format_;
    const Date now_;
    BranchGraph graph_;
};

/// The members that a revision's record has in addition: `branch`, as people call it, null for
/// none, and `parents`.
void addGraphMembers(Dictionary& record, const GraphNode& node, const ProjectLayout& layout);

} // namespace quen::tools
