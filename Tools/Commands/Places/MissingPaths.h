#pragma once

#include "Host/Facts/StatusFacts.h"
#include "Tools/Commands/Session/Session.h"

#include <string>
#include <vector>

namespace quen::tools {

/// Of the paths that a person typed, those that name nothing: URLs aside, what is neither on the
/// disk nor, at or below the path, in what a status says.
std::vector<std::string> missingAmong(const std::vector<std::string>& paths,
                                      const std::vector<StatusEntry>& entries);

/// Likewise, for a step whose client says nothing of a path that is not there. Asks for a status
/// where a path is not on the disk: it may be deleted and not yet committed.
std::vector<std::string> missingAmong(const std::vector<std::string>& paths);

/// Tells each that is not there now either. `status` where there was none, otherwise a failure.
int tellOfMissing(const Session& session, const std::vector<std::string>& missing, int status);

} // namespace quen::tools
