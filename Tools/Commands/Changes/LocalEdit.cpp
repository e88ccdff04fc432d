#include "Tools/Commands/Changes/LocalEdit.h"

#include "Host/Places/Locations.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Commands/Changes/Change.h"
#include "Tools/Commands/Places/SourceTreeFinder.h"
#include "Tools/Commands/Session/HostQueries.h"

#include <algorithm>

namespace quen::tools {

namespace {

bool anyIsRemote(const std::vector<std::string>& paths) {
    return std::any_of(paths.begin(), paths.end(), isRepositoryURL);
}

Outcome<Losses> lossesOf(const Session& session, const LocalEdit& edit,
                         const LocalEditOptions& options) {
    if (anyIsRemote(options.paths)) {
        return edit.remoteLosses ? edit.remoteLosses(session, options.paths) : Losses(edit.toDo);
    }
    return edit.losses ? edit.losses(session, absolutePaths(options.paths)) : Losses(edit.toDo);
}

int makeEdit(Session& session, const SourceTree& source, const LocalEdit& edit,
             const LocalEditOptions& options, Losses losses, Dictionary requestOptions) {
    const bool isRemote = anyIsRemote(options.paths);
    const auto request =
        makeRequest(edit.type, source, clientPaths(options.paths), std::move(requestOptions));
    if (const int status = losses.keep(session, options.paths, options.isSure);
        status != ExitSuccess) {
        return status;
    }
    const int status = makeChange(
        session, {request, isRemote ? "" : options.paths.front()},
        [&](const Value& result, const ChangeOutput& output) {
            if (isRemote) {
                return committedSummary(result, output);
            }
            const std::size_t items = output.items() + losses.unversionedAmong(options.paths);
            return items == 0 ? "Nothing to " + edit.toDo + "."
                              : edit.done + " " + counted(items, edit.noun) + "." + losses.advice();
        });
    return losses.conclude(session, status);
}

} // namespace

void LocalEditOptions::addTo(Subcommand& command) {
    command.arguments("PATH", paths, "Files or directories").required();
}

void LocalEditOptions::addOptionalTo(Subcommand& command, const std::string& help) {
    command.arguments("PATH", paths, help);
    addYesOption(command, isSure);
}

void addYesOption(Subcommand& command, bool& isSure) {
    command.flag("-y,--yes", isSure, "Go ahead without a question");
}

int runLocalEdit(Session& session, const LocalEdit& edit, const LocalEditOptions& options) {
    const auto source = findSource(session, options.paths.front());
    if (!source) {
        return source.status();
    }
    const auto losses = lossesOf(session, edit, options);
    if (!losses) {
        return losses.status();
    }
    if (const int status = losses->confirm(session, options.isSure); status != ExitSuccess) {
        return status;
    }
    // Only what goes to the repository at once has a message.
    if (!anyIsRemote(options.paths) && options.message.needsEditor()) {
        return makeEdit(session, *source, edit, options, *losses, Dictionary());
    }
    LogMessage message(session);
    if (!message.obtain(options.message, options.paths)) {
        return ExitFailure;
    }
    return message.conclude(makeEdit(session, *source, edit, options, *losses,
                                     {{QuenSourceControlRequestOptionMessage, message.text()}}));
}

} // namespace quen::tools
