#pragma once

#include "Tools/Commands/History/GraphQuery.h"

#include <string>

namespace quen::tools {

/// What `log --graph` was asked for.
struct GraphOptions {
    GraphQuery query;
    LayoutOptions layout;
    /// A path or URL; empty for the project here.
    std::string location;
    bool isOneLine = false;
    bool isQuiet = false;
    bool wantsPaths = false;
    /// One record a line.
    bool isInLines = false;
};

/// Shows the branches and merges of a project, as JSON where the session's options say so.
/// Explained where the location is only a part of a branch. The exit status.
int showGraph(Session& session, const GraphOptions& options);

} // namespace quen::tools
