#pragma once

#include "Tools/Commands/Places/RevisionArguments.h"
#include "Tools/Commands/Places/SourceTreeFinder.h"
#include "Tools/Commands/Session/Session.h"

#include <string>
#include <vector>

namespace quen::tools {

/// What is compared.
struct DiffTargets {
    RevisionRange revisions;
    std::vector<std::string> paths;
};

/// What is wrong with the targets of a summary; empty for nothing.
std::string faultOfSummary(const DiffTargets& targets);

/// Shows the names of what differs between two places of the repository: OLD and NEW, each at its
/// end of the range where there is one. A path stands for its URL; a single target for both.
/// The exit status.
int showSummary(Session& session, const SourceTree& source, const DiffTargets& targets);

} // namespace quen::tools
