#include "Host/Plans/Plans.h"
#include "Tools/Commands/Changes/LocalEdit.h"
#include "Tools/Commands/CommandLine/CommandLine.h"

#include <memory>

namespace quen::tools {

namespace {

Outcome<Losses> losses(const Session& session, const std::vector<String>& paths) {
    return Losses::ofPlan(session, "remove", planRemove(paths, Losses::run));
}

int runRemoveCommand(Session& session, const LocalEditOptions& options) {
    const LocalEdit edit{RequestTypeRemove, "Removed", "remove", "item", losses};
    return runLocalEdit(session, edit, options);
}

} // namespace

void addRemoveCommand(CommandLine& line) {
    const auto options = std::make_shared<LocalEditOptions>();
    Subcommand command = line.add(
        "remove", "Delete items from disk and version control, or URLs from the repository");
    options->addTo(command);
    options->message.addTo(command);
    addYesOption(command, options->isSure);
    runInSession<LocalEditOptions>(command, options, runRemoveCommand);
}

} // namespace quen::tools
