#pragma once

#include "Tools/Command.h"

namespace quen {

/// Adds `create` and `delete` to the sub-command `branch`.
void addBranchEditCommands(CommandLine& line, CLI::App& branch);

} // namespace quen
