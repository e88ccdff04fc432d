#pragma once

#include "Tools/Commands/Session/Session.h"

#include <cstddef>
#include <functional>
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

/// What is said of an edit that was made: `Ignored 2 names.`
using IgnoreDone = std::function<std::string(std::size_t names)>;

/// Sends a request of that type and tells how it went. Where one of several names cannot be used
/// nothing is changed. The exit status.
int runIgnoreEdit(Session& session, RequestType type, const IgnoreDone& done,
                  const IgnoreOptions& options);

} // namespace quen::tools
