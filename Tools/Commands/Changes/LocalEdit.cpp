#include "Tools/Commands/Changes/LocalEdit.h"

#include "Host/Places/Locations.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Commands/Changes/Change.h"
#include "Tools/Commands/Places/SourceTreeFinder.h"

#include <algorithm>
#include <filesystem>

namespace quen::tools {

namespace {

bool anyIsRemote(const std::vector<std::string>& paths) {
    return std::any_of(paths.begin(), paths.end(), isRepositoryURL);
}

std::vector<String> absolutePaths(const std::vector<std::string>& paths) {
    std::vector<String> absolute;
    absolute.reserve(paths.size());
    for (const std::string& path : paths) {
        absolute.emplace_back(std::filesystem::absolute(path).lexically_normal().string());
    }
    return absolute;
}

Outcome<Losses> lossesOf(const Session& session, const LocalEdit& edit,
                         const LocalEditOptions& options) {
    return edit.losses && !anyIsRemote(options.paths)
               ? edit.losses(session, absolutePaths(options.paths))
               : Losses(edit.toDo, {});
}

int makeEdit(Session& session, const SourceTree& source, const LocalEdit& edit,
             const LocalEditOptions& options, Losses losses, Dictionary requestOptions) {
    const bool isRemote = anyIsRemote(options.paths);
    const auto request =
        makeRequest(edit.type, source, clientPaths(options.paths), std::move(requestOptions));
    losses.keep(session, options.paths.front());
    const int status = makeChange(session, {request, isRemote ? "" : options.paths.front()},
                                  [&](const Value& result, const ClientReport& report) {
                                      if (isRemote) {
                                          return committedSummary(result, report);
                                      }
                                      return report.items() == 0
                                                 ? "Nothing to " + edit.toDo + "."
                                                 : edit.done + " " +
                                                       counted(report.items(), edit.noun) + "." +
                                                       losses.advice();
                                  });
    return losses.conclude(session, status);
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
    const auto losses = lossesOf(session, edit, options);
    if (!losses) {
        return losses.status();
    }
    const auto mayGo = losses->mayGo(session, options.isSure);
    if (!mayGo || !*mayGo) {
        return mayGo ? ExitFailure : mayGo.status();
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
