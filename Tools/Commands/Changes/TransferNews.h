#pragma once

#include "Host/Facts/ChangeFacts.h"
#include "Host/Keeping/ConflictOutcome.h"
#include "Tools/Commands/Session/Session.h"

#include <string>
#include <vector>

namespace quen::tools {

/// Tells on standard error what a transfer leaves for a person to look at: the conflicts that the
/// client decided, those that it left, and what it skipped, each item by name, with what to do.
/// Nothing where there is nothing. `showTheirs` is the command that shows what came in where it was
/// not kept; empty where there is none.
void tellOutcomes(const Session& session, const std::vector<ConflictOutcome>& outcomes,
                  const std::vector<SkippedItem>& skipped, const std::string& showTheirs);

} // namespace quen::tools
