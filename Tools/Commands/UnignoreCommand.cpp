#include "Tools/Commands/Changes/IgnoreEdit.h"
#include "Tools/Commands/Changes/Summaries.h"
#include "Tools/Commands/CommandLine/CommandLine.h"

#include <memory>

namespace quen::tools {

namespace {

int runUnignoreCommand(Session& session, const IgnoreOptions& options) {
    const auto done = [](std::size_t names) {
        return "Removed " + counted(names, "pattern") + " from svn:ignore.";
    };
    return runIgnoreEdit(session, RequestTypeUnignore, done, options);
}

} // namespace

void addUnignoreCommand(CommandLine& line) {
    const auto options = std::make_shared<IgnoreOptions>();
    Subcommand command = line.add("unignore", "Stop ignoring names or patterns (svn:ignore)");
    options->addTo(command);
    runInSession<IgnoreOptions>(command, options, runUnignoreCommand);
}

} // namespace quen::tools
