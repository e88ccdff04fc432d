#pragma once

#include "Tools/Commands/Session/Session.h"

#include <functional>
#include <string>
#include <vector>

namespace quen::tools {

/// The options of the sub-commands that take items from one place to another.
struct TreeEditOptions {
    CommonOptions common;
    /// The sources, then where they go.
    std::vector<std::string> places;

    /// The places alone; `help` is about them.
    void addTo(Subcommand& command, const std::string& help);
};

/// Does it for one source; the exit status.
using TreeEdit = std::function<int(const std::string& source, const std::string& destination)>;

/// Does it for each source in turn, as long as all goes well. Where the destination is a directory
/// that is there they go into it, each under its own name; several need one. The exit status.
int runTreeEdit(const Session& session, const TreeEditOptions& options, const TreeEdit& edit);

} // namespace quen::tools
