#pragma once

#include "Tools/Commands/CommandLine/Subcommand.h"

namespace quen::tools {

/// Adds `create` and `delete` to the sub-command `branch`.
void addBranchEditCommands(Subcommand& branch);

/// Makes the sub-command create a tag.
void addTagEdit(Subcommand tag);

} // namespace quen::tools
