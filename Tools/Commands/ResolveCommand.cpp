#include "Tools/Commands/Changes/LocalEdit.h"
#include "Tools/Commands/CommandLine/CommandLine.h"

#include <memory>

namespace quen::tools {

namespace {

int runResolveCommand(Session& session, const LocalEditOptions& options) {
    return runLocalEdit(session, {RequestTypeResolve, "Resolved", "resolve", "conflict"}, options);
}

} // namespace

void addResolveCommand(CommandLine& line) {
    const auto options = std::make_shared<LocalEditOptions>();
    Subcommand command =
        line.add("resolve", "Mark conflicts as resolved, keeping the files as they are");
    options->addTo(command);
    runInSession<LocalEditOptions>(command, options, runResolveCommand);
}

} // namespace quen::tools
