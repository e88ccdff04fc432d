#pragma once

#include "Tools/Commands/Changes/LogMessage.h"
#include "Tools/Commands/Changes/Losses.h"
#include "Tools/Commands/Session/Session.h"

#include <functional>
#include <string>
#include <vector>

namespace quen::tools {

/// The options of sub-commands that do one thing to each of their paths.
struct LocalEditOptions {
    CommonOptions common;
    MessageOptions message;
    bool isSure = false;
    std::vector<std::string> paths;

    /// The paths alone; the other members have options of their own.
    void addTo(Subcommand& command);
    /// Likewise, for sub-commands that without a path find out themselves what is meant.
    void addOptionalTo(Subcommand& command, const std::string& help);
};

/// `-y`, for commands that ask before they take or touch something.
void addYesOption(Subcommand& command, bool& isSure);

/// What such a sub-command does.
struct LocalEdit {
    RequestType type;
    /// Of the summary: `Added 3 items.`, `Nothing to add.`
    std::string done;
    std::string toDo;
    std::string noun = "item";
    /// What it would take from the disk, of absolute paths; empty for nothing. A person is asked
    /// before.
    std::function<Outcome<Losses>(const Session&, const std::vector<String>&)> losses = {};
    /// Likewise in the repository, of URLs as they were typed.
    std::function<Outcome<Losses>(const Session&, const std::vector<std::string>&)> remoteLosses =
        {};
};

/// Does it and tells how it went. The exit status.
int runLocalEdit(Session& session, const LocalEdit& edit, const LocalEditOptions& options);

} // namespace quen::tools
