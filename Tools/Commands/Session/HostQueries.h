#pragma once

#include "QuenFoundation/QuenSourceControlOperation.h"

#include <string>
#include <vector>

namespace quen::tools {

/// Runs a query of the host's own, as a plan makes them, and ends it where the person interrupts.
void runHostQuery(QuenSourceControlTaskOperation& query);

/// Paths as plans take them.
std::vector<String> absolutePaths(const std::vector<std::string>& paths);

} // namespace quen::tools
