#include "Host/Plans/Plans.h"
#include "Tools/Commands/Changes/LocalEdit.h"
#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/Places/MissingPaths.h"
#include "Tools/Commands/Session/HostQueries.h"

#include <memory>

namespace quen::tools {

namespace {

Outcome<Losses> losses(const Session& session, const std::vector<String>& paths) {
    return Losses::ofPlan(session, "revert", planRevert(paths, runHostQuery));
}

int runRevertCommand(Session& session, const LocalEditOptions& options) {
    const LocalEdit edit{RequestTypeRevert, "Reverted", "revert", "item", losses};
    const auto missing = missingAmong(options.paths);
    const bool isAll = missing.size() == options.paths.size();
    return tellOfMissing(session, missing,
                         isAll ? ExitSuccess : runLocalEdit(session, edit, options));
}

} // namespace

void addRevertCommand(CommandLine& line) {
    const auto options = std::make_shared<LocalEditOptions>();
    Subcommand command = line.add("revert", "Discard local changes");
    options->addTo(command);
    addYesOption(command, options->isSure);
    runInSession<LocalEditOptions>(command, options, runRevertCommand);
}

} // namespace quen::tools
