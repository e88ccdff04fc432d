#include "Tools/Commands/Changes/LocalEdit.h"
#include "Tools/Commands/CommandLine/CommandLine.h"

#include <memory>

namespace quen::tools {

namespace {

int runAddCommand(Session& session, const LocalEditOptions& options) {
    return runLocalEdit(session, {RequestTypeAdd, "Added", "add"}, options);
}

} // namespace

void addAddCommand(CommandLine& line) {
    const auto options = std::make_shared<LocalEditOptions>();
    Subcommand command = line.add("add", "Put files and directories under version control");
    options->addTo(command);
    runInSession<LocalEditOptions>(command, options, runAddCommand);
}

} // namespace quen::tools
