#pragma once

#include "Tools/Commands/Session/Session.h"

#include <string>
#include <vector>

namespace quen::tools {

/// The options of the sub-commands that change which names are ignored.
struct IgnoreOptions {
    CommonOptions common;
    std::vector<std::string> paths;

    /// The paths alone.
    void addTo(Subcommand& command);
};

/// Sends a request of that type and tells how it went: `Ignored 2 names.` begins with `done`. The
/// exit status.
int runIgnoreEdit(Session& session, RequestType type, const std::string& done,
                  const IgnoreOptions& options);

} // namespace quen::tools
