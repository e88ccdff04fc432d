#include "Tools/Commands/Changes/LocalEdit.h"

#include "Host/Places/Locations.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Commands/Changes/Change.h"
#include "Tools/Commands/Changes/ChangeList.h"
#include "Tools/Commands/Places/SourceTreeFinder.h"
#include "Tools/Terminal/Question.h"

#include <algorithm>
#include <iostream>

namespace quen::tools {

namespace {

bool anyIsRemote(const std::vector<std::string>& paths) {
    return std::any_of(paths.begin(), paths.end(), isRepositoryURL);
}

/// Asks a person before changes are lost. Where nobody can be asked the command is taken at its
/// word.
Outcome<bool> mayLoseChanges(Session& session, const SourceTree& source, const LocalEdit& edit,
                             const LocalEditOptions& options) {
    if (edit.lostChanges == 0 || options.isSure || !canAsk() || anyIsRemote(options.paths)) {
        return true;
    }
    const auto changes = linesOfChanges(session, source, options.paths, edit.lostChanges);
    if (!changes) {
        return changes.explained();
    }
    for (const std::string& change : *changes) {
        std::cerr << change << '\n';
    }
    return changes->empty() ||
           ask("What is not in the repository is then lost. " + edit.toDo + " all the same?");
}

int makeEdit(Session& session, const SourceTree& source, const LocalEdit& edit,
             const LocalEditOptions& options, Dictionary requestOptions) {
    const bool isRemote = anyIsRemote(options.paths);
    const auto request =
        makeRequest(edit.type, source, clientPaths(options.paths), std::move(requestOptions));
    return makeChange(session, {request, isRemote ? "" : options.paths.front()},
                      [&](const Value& result, const ClientReport& report) {
                          if (isRemote) {
                              return committedSummary(result, report);
                          }
                          return report.items() == 0
                                     ? "Nothing to " + edit.toDo + "."
                                     : edit.done + " " + counted(report.items(), edit.noun) + ".";
                      });
}

} // namespace

void LocalEditOptions::addTo(Subcommand& command) {
    command.arguments("PATH", paths, "Files or directories").required();
}

void addYesOption(Subcommand& command, bool& isSure) {
    command.flag("-y,--yes", isSure, "Do not ask before changes are lost");
}

int runLocalEdit(Session& session, const LocalEdit& edit, const LocalEditOptions& options) {
    const auto source = findSource(session, options.paths.front());
    if (!source) {
        return source.status();
    }
    const auto mayGoOn = mayLoseChanges(session, *source, edit, options);
    if (!mayGoOn || !*mayGoOn) {
        return mayGoOn ? ExitFailure : mayGoOn.status();
    }
    // Only what goes to the repository at once has a message.
    if (!anyIsRemote(options.paths) && options.message.needsEditor()) {
        return makeEdit(session, *source, edit, options, Dictionary());
    }
    LogMessage message(session);
    if (!message.obtain(options.message, options.paths)) {
        return ExitFailure;
    }
    return message.conclude(makeEdit(session, *source, edit, options,
                                     {{QuenSourceControlRequestOptionMessage, message.text()}}));
}

} // namespace quen::tools
