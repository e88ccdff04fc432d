#pragma once

#include "Tools/Commands/Places/SourceTreeFinder.h"

#include <string>
#include <vector>

namespace quen::tools {

/// A request for what was changed here and not committed at and below the paths; without paths, in
/// the directory here.
QuenSourceControlRequestPtr localDifference(const SourceTree& source,
                                            const std::vector<std::string>& paths);

} // namespace quen::tools
