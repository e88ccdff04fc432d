#pragma once

#include "Tools/Commands/Places/ProjectLayout.h"
#include "Tools/Commands/Report/ReportFacts.h"
#include "Tools/Commands/Session/Session.h"

namespace quen::tools {

/// Asks the repository for all that a report shows: its log, what was merged, the list of the
/// trunk's files, and who changed the lines of those that change most. Explained where the log or
/// the list fail.
Outcome<ReportFacts> readReport(Session& session, const SourceTree& source,
                                const ReportLimits& limits);

} // namespace quen::tools
