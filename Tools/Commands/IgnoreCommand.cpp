#include "Tools/Commands/Changes/IgnoreEdit.h"
#include "Tools/Commands/Changes/Summaries.h"
#include "Tools/Commands/CommandLine/CommandLine.h"

#include <memory>

namespace quen::tools {

namespace {

int runIgnoreCommand(Session& session, const IgnoreOptions& options) {
    const auto done = [](std::size_t names) { return "Ignored " + counted(names, "name") + "."; };
    return runIgnoreEdit(session, RequestTypeIgnore, done, options);
}

} // namespace

void addIgnoreCommand(CommandLine& line) {
    const auto options = std::make_shared<IgnoreOptions>();
    Subcommand command = line.add("ignore", "Ignore names or patterns (svn:ignore)");
    options->addTo(command);
    runInSession<IgnoreOptions>(command, options, runIgnoreCommand);
}

} // namespace quen::tools
