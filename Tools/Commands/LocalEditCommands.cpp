#include "Host/Places/Locations.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Commands/Changes/Change.h"
#include "Tools/Commands/Changes/ChangeList.h"
#include "Tools/Commands/Changes/LogMessage.h"
#include "Tools/Commands/Places/SourceTreeFinder.h"
#include "Tools/Terminal/Question.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <memory>

namespace quen::tools {

namespace {

struct Options {
    CommonOptions common;
    MessageOptions message;
    bool isSure = false;
    std::vector<std::string> paths;
};

/// What the siblings differ in.
struct Edit {
    std::string name;
    RequestType type;
    /// Of the summary: `Added 3 items.`, `Nothing to add.`
    std::string done;
    std::string toDo;
    std::string noun = "item";
    /// The changes that it takes from the disk; 0 for none.
    std::uint32_t lostChanges = 0;
};

bool anyIsRemote(const std::vector<std::string>& paths) {
    return std::any_of(paths.begin(), paths.end(),
                       [](const std::string& path) { return isRepositoryURL(path); });
}

/// Asks a person before changes are lost. Where nobody can be asked, or the status is not to be
/// had, the command is taken at its word.
bool mayLoseChanges(Session& session, const SourceTree& source, const Edit& edit,
                    const Options& options, int& status) {
    if (edit.lostChanges == 0 || options.isSure || !canAsk() || anyIsRemote(options.paths)) {
        return true;
    }
    const auto changes = linesOfChanges(session, source, options.paths, edit.lostChanges, status);
    if (!changes || changes->empty()) {
        return changes.has_value();
    }
    for (const std::string& change : *changes) {
        std::cerr << change << '\n';
    }
    status = ExitFailure;
    return ask("What is not in the repository is then lost. " + edit.name + " all the same?");
}

int makeEdit(Session& session, const SourceTree& source, const Edit& edit, const Options& options,
             Dictionary requestOptions) {
    const bool isRemote = anyIsRemote(options.paths);
    const auto request =
        makeRequest(edit.type, source, clientPaths(options.paths), std::move(requestOptions));
    return makeChange(session, {request, isRemote ? "" : options.paths.front()}, options.common,
                      [&](const Value& result, const ClientReport& report) {
                          if (isRemote) {
                              return committedSummary(result, report);
                          }
                          return report.items() == 0
                                     ? "Nothing to " + edit.toDo + "."
                                     : edit.done + " " + counted(report.items(), edit.noun) + ".";
                      });
}

int runEdit(const Edit& edit, const Options& options) {
    const auto session = Session::open(options.common, edit.name);
    if (session == nullptr) {
        return ExitFailure;
    }
    const auto source = SourceTreeFinder(*session, options.common).find(options.paths.front());
    int status = ExitFailure;
    if (!source || !mayLoseChanges(*session, *source, edit, options, status)) {
        return status;
    }
    // Only what goes to the repository at once has a message.
    if (!anyIsRemote(options.paths) && options.message.needsEditor()) {
        return makeEdit(*session, *source, edit, options, Dictionary());
    }
    LogMessage message(*session);
    if (!message.obtain(options.message, options.paths)) {
        return ExitFailure;
    }
    return message.conclude(makeEdit(*session, *source, edit, options,
                                     {{QuenSourceControlRequestOptionMessage, message.text()}}));
}

CLI::App* addEdit(CommandLine& line, const Edit& edit, const std::string& help,
                  const std::shared_ptr<Options>& options) {
    CLI::App* const command = line.app.add_subcommand(edit.name, help);
    command->add_option("PATH", options->paths, "Files or directories")->required();
    options->common.addTo(*command);
    command->callback(
        [&line, edit, options] { line.run = [edit, options] { return runEdit(edit, *options); }; });
    return command;
}

void addYesOption(CLI::App& command, Options& options) {
    command.add_flag("-y,--yes", options.isSure, "Do not ask before changes are lost");
}

} // namespace

void addLocalEditCommands(CommandLine& line) {
    addEdit(line, {"add", RequestTypeAdd, "Added", "add"},
            "Put files and directories under version control", std::make_shared<Options>());

    const auto removal = std::make_shared<Options>();
    CLI::App* const remove = addEdit(
        line, {"remove", RequestTypeRemove, "Removed", "remove", "item", changesLostByRemoval},
        "Remove items from the disk and from version control, or URLs from the repository",
        removal);
    removal->message.addTo(*remove);
    addYesOption(*remove, *removal);

    const auto reversal = std::make_shared<Options>();
    CLI::App* const revert = addEdit(
        line, {"revert", RequestTypeRevert, "Reverted", "revert", "item", changesLostByRevert},
        "Undo the changes of a working copy that were not committed", reversal);
    addYesOption(*revert, *reversal);

    addEdit(line, {"resolve", RequestTypeResolve, "Resolved", "resolve", "conflict"},
            "Settle conflicts: what the files now hold is right", std::make_shared<Options>());
}

} // namespace quen::tools
