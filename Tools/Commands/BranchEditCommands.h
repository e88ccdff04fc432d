#pragma once

#include "Tools/Commands/CommandLine/CommandLine.h"

namespace quen::tools {

/// Adds `create` and `delete` to the sub-command `branch`.
void addBranchEditCommands(CommandLine& line, CLI::App& branch);

} // namespace quen::tools
