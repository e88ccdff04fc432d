#include "Tools/Commands/Changes/IgnoreEdit.h"
#include "Tools/Commands/CommandLine/CommandLine.h"

#include <memory>

namespace quen::tools {

namespace {

int runIgnoreCommand(Session& session, const IgnoreOptions& options) {
    return runIgnoreEdit(session, RequestTypeIgnore, "Ignored", options);
}

} // namespace

void addIgnoreCommand(CommandLine& line) {
    const auto options = std::make_shared<IgnoreOptions>();
    Subcommand command =
        line.add("ignore", "Add names or patterns to the ignored ones of their directories");
    options->addTo(command);
    runInSession<IgnoreOptions>(command, options, runIgnoreCommand);
}

} // namespace quen::tools
