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
    Subcommand command = line.add("resolve", "Settle conflicts: what the files now hold is right");
    options->addTo(command);
    runInSession<LocalEditOptions>(command, options, runResolveCommand);
}

} // namespace quen::tools
