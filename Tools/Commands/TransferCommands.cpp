#include "Foundation/PathComponents.h"
#include "Host/Places/Locations.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Commands/Changes/Change.h"
#include "Tools/Commands/Changes/LogMessage.h"
#include "Tools/Commands/Places/BranchLocation.h"
#include "Tools/Commands/Places/RevisionArguments.h"
#include "Tools/Commands/Places/SourceTreeFinder.h"

#include <CLI/CLI.hpp>
#include <memory>

namespace quen::tools {

namespace {

struct Options {
    CommonOptions common;
    LayoutOptions layout;
    MessageOptions message;
    RevisionRange revision;
    std::string url;
    std::string path;
    std::vector<std::string> paths{"."};
};

/// ` (3 items)`; nothing for none.
std::string itemsIn(const ClientReport& report) {
    return report.items() == 0 ? "" : " (" + counted(report.items(), "item") + ")";
}

/// ` revision 12`; nothing where the client named none.
std::string revisionIn(const ClientReport& report) {
    return report.revision().empty() ? "" : " revision " + report.revision();
}

int runCheckoutCommand(const Options& options) {
    const auto session = Session::open(options.common, "checkout");
    if (session == nullptr) {
        return ExitFailure;
    }
    const std::string directory =
        options.path.empty() ? directoryNameFor(options.url) : options.path;
    const auto source = SourceTreeFinder(*session, options.common).find(options.url);
    if (!source) {
        return ExitFailure;
    }
    const auto request = makeRequest(RequestTypeCheckout, *source, {clientPath(options.url)});
    request->setDestination(closedDirectory(directory));
    // The client's own default. Said, so that a URL that leads nowhere is told with its revision.
    request->setStartingRevision(
        startingRevisionFor(options.revision.isGiven() ? options.revision.start : "HEAD"));
    return makeChange(*session, {request, directory, true}, options.common,
                      [&](const Value& /*result*/, const ClientReport& report) {
                          return "Checked out" + revisionIn(report) + " to " +
                                 printable(directory) + itemsIn(report) + ".";
                      });
}

int runImportCommand(const Options& options) {
    const auto session = Session::open(options.common, "import");
    if (session == nullptr) {
        return ExitFailure;
    }
    const auto source = SourceTreeFinder(*session, options.common).find(options.url);
    LogMessage message(*session);
    if (!source || !message.obtain(options.message, {options.path + " to " + options.url})) {
        return ExitFailure;
    }
    // Unlike most commands, the client's import reads no revisions. Behind `/.` the plug-in sees no
    // name to close either.
    const bool holdsAt = lastPathComponent(options.path).find('@') != std::string_view::npos;
    const std::string path = options.path + (holdsAt ? "/." : "");
    const auto request =
        makeRequest(RequestTypeImport, *source, {clientPath(path)},
                    {{QuenSourceControlRequestOptionMessage, message.text()},
                     {QuenSourceControlRequestOptionSourceLocation, clientPath(options.url)}});
    return message.conclude(makeChange(*session, {request, ""}, options.common,
                                       [](const Value& result, const ClientReport& report) {
                                           return report.revision().empty()
                                                      ? "Nothing to import."
                                                      : committedSummary(result, report);
                                       }));
}

int runSwitchCommand(const Options& options) {
    const auto session = Session::open(options.common, "switch");
    if (session == nullptr) {
        return ExitFailure;
    }
    const auto source = SourceTreeFinder(*session, options.common).find(options.path);
    const auto branch =
        branchLocation(*session, options.common, options.layout, options.path, options.url);
    if (!source || !branch) {
        return session->failureStatus();
    }
    const auto request = makeRequest(RequestTypeSwitch, *source, {clientPath(options.path)});
    request->setDestination(*branch);
    return makeChange(*session, {request, options.path}, options.common,
                      [&](const Value& /*result*/, const ClientReport& report) {
                          return "Switched to " + printable(options.url) + itemsIn(report) + ".";
                      });
}

int runUpdateCommand(const Options& options) {
    const auto session = Session::open(options.common, "update");
    if (session == nullptr) {
        return ExitFailure;
    }
    const auto source = SourceTreeFinder(*session, options.common).find(options.paths.front());
    if (!source) {
        return ExitFailure;
    }
    const auto request = makeRequest(RequestTypeUpdate, *source, clientPaths(options.paths));
    request->setStartingRevision(startingRevisionFor(options.revision.start));
    return makeChange(*session, {request, options.paths.front()}, options.common,
                      [](const Value& /*result*/, const ClientReport& report) {
                          return report.items() == 0
                                     ? "Nothing to update: at" + revisionIn(report) + "."
                                     : "Updated to" + revisionIn(report) + itemsIn(report) + ".";
                      });
}

void addCheckoutCommand(CommandLine& line) {
    const auto options = std::make_shared<Options>();
    CLI::App* const command = line.app.add_subcommand("checkout", "Make a new working copy");
    addRevisionOption(*command, options->revision, false, "Which revision (default: the youngest)");
    command->add_option("URL", options->url, "What to check out")->required();
    command->add_option("DIRECTORY", options->path, "Where to (default: the URL's last part)");
    options->common.addTo(*command);
    runWhenGiven(line, *command, options, runCheckoutCommand);
}

void addImportCommand(CommandLine& line) {
    const auto options = std::make_shared<Options>();
    CLI::App* const command =
        line.app.add_subcommand("import", "Put a directory or file into the repository");
    options->message.addTo(*command);
    command->add_option("PATH", options->path, "What to import")->required();
    command->add_option("URL", options->url, "What it becomes; a directory's content goes into it")
        ->required();
    options->common.addTo(*command);
    runWhenGiven(line, *command, options, runImportCommand);
}

void addSwitchCommand(CommandLine& line) {
    const auto options = std::make_shared<Options>();
    options->path = ".";
    CLI::App* const command =
        line.app.add_subcommand("switch", "Make a working copy follow another branch");
    command->add_option("BRANCH", options->url, "A branch, `trunk`, a URL or ^/NAME")->required();
    command->add_option("PATH", options->path, "The working copy (default: here)");
    options->layout.addTo(*command);
    options->common.addTo(*command);
    runWhenGiven(line, *command, options, runSwitchCommand);
}

void addUpdateCommand(CommandLine& line) {
    const auto options = std::make_shared<Options>();
    CLI::App* const command = line.app.add_subcommand(
        "update",
        "Bring a working copy up to date; where both sides changed a file, yours is kept");
    addRevisionOption(*command, options->revision, false, "To which (default: the youngest)");
    command->add_option("PATH", options->paths, "Files or directories (default: here)");
    options->common.addTo(*command);
    runWhenGiven(line, *command, options, runUpdateCommand);
}

} // namespace

void addTransferCommands(CommandLine& line) {
    addCheckoutCommand(line);
    addImportCommand(line);
    addSwitchCommand(line);
    addUpdateCommand(line);
}

} // namespace quen::tools
