#include "Host/Plans/Plans.h"
#include "Tools/Commands/Changes/LocalEdit.h"
#include "Tools/Commands/Changes/PathsByStatus.h"
#include "Tools/Commands/Changes/Summaries.h"
#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/Session/HostQueries.h"

#include <memory>
#include <utility>

namespace quen::tools {

namespace {

Outcome<Losses> losses(const Session& session, const std::vector<String>& paths) {
    return Losses::ofPlan(session, "remove", planRemove(paths, runHostQuery));
}

std::string wordsFor(const RemovedURL& removed) {
    return removed.kind.view() == "dir" ? "directory, " + counted(removed.itemsBelow, "item")
                                        : "file";
}

/// Nothing is lost that the repository does not hold; but it goes for everybody, and at once.
Outcome<Losses> remoteLosses(const Session& session, const std::vector<std::string>& urls) {
    const RemoteRemovePlan plan =
        planRemoteRemove(std::vector<String>(urls.begin(), urls.end()), runHostQuery);
    if (plan.error) {
        return Losses::explain(session, plan.error);
    }
    Confirmation confirmation("This will be removed from the repository at once, for everybody:",
                              "Remove " + counted(plan.removed.size(), "URL") + "?");
    for (const RemovedURL& each : plan.removed) {
        confirmation.add(wordsFor(each), printable(each.url.view()));
    }
    return Losses("remove", std::move(confirmation), {});
}

int runRemoveCommand(Session& session, const LocalEditOptions& options) {
    const LocalEdit edit{RequestTypeRemove, "Removed", "remove", "item", losses, remoteLosses};
    if (!options.paths.empty()) {
        return runLocalEdit(session, edit, options);
    }
    const auto missing = pathsWithStatus(session, "missing", ".");
    return missing ? editByStatus(session, edit, options, *missing, "missing") : missing.status();
}

} // namespace

void addRemoveCommand(CommandLine& line) {
    const auto options = std::make_shared<LocalEditOptions>();
    Subcommand command = line.add(
        "remove", "Delete items from disk and version control, or URLs from the repository");
    options->addOptionalTo(command,
                           "Paths or URLs (default: what is missing here, after a question)");
    options->message.addTo(command);
    runInSession<LocalEditOptions>(command, options, runRemoveCommand);
}

} // namespace quen::tools
