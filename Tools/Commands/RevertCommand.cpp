#include "Tools/Commands/Changes/ChangeList.h"
#include "Tools/Commands/Changes/LocalEdit.h"
#include "Tools/Commands/CommandLine/CommandLine.h"

#include <memory>

namespace quen::tools {

namespace {

int runRevertCommand(Session& session, const LocalEditOptions& options) {
    return runLocalEdit(
        session, {RequestTypeRevert, "Reverted", "revert", "item", changesLostByRevert}, options);
}

} // namespace

void addRevertCommand(CommandLine& line) {
    const auto options = std::make_shared<LocalEditOptions>();
    Subcommand command =
        line.add("revert", "Undo the changes of a working copy that were not committed");
    options->addTo(command);
    addYesOption(command, options->isSure);
    runInSession<LocalEditOptions>(command, options, runRevertCommand);
}

} // namespace quen::tools
