#include "Host/Places/Locations.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Commands/Changes/Change.h"
#include "Tools/Commands/Changes/LogMessage.h"
#include "Tools/Commands/Places/BranchLocation.h"
#include "Tools/Commands/Places/RevisionArguments.h"
#include "Tools/Commands/Places/SourceTreeFinder.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <memory>

namespace quen::tools {

namespace {

struct Options {
    CommonOptions common;
    LayoutOptions layout;
    MessageOptions message;
    RevisionRange revisions;
    std::string source;
    std::string destination = ".";
    std::vector<std::string> directories;
};

/// The tree knows its items by absolute paths.
std::string absolutePath(const std::string& path) {
    return std::filesystem::absolute(path).lexically_normal().string();
}

bool tellIfRemote(const Session& session, const std::string& location, const std::string& advice) {
    if (isRepositoryURL(location)) {
        session.tell("\"" + printable(location) + "\" is a URL. " + advice);
        return true;
    }
    return false;
}

ChangeSummary summaryFromTo(const std::string& done, const Options& options) {
    const std::string text =
        done + " " + printable(options.source) + " to " + printable(options.destination) + ".";
    return [text](const Value& /*result*/, const ClientReport& /*report*/) { return text; };
}

int runCopyCommand(const Options& options) {
    const auto session = Session::open(options.common, "copy");
    if (session == nullptr ||
        tellIfRemote(*session, options.destination,
                     "Copies within the repository are made by: quen branch create")) {
        return ExitFailure;
    }
    // About the working copy that is written to, also where the source is a URL.
    const auto source = SourceTreeFinder(*session, options.common).find(options.destination);
    if (!source) {
        return ExitFailure;
    }
    const auto request = makeRequest(RequestTypeCopy, *source, {clientPath(options.source)});
    request->setDestination(closedClientPath(options.destination));
    return makeChange(*session, {request, options.destination}, options.common,
                      summaryFromTo("Copied", options));
}

int runMoveCommand(const Options& options) {
    const auto session = Session::open(options.common, "move");
    const std::string advice = "Items are moved in a working copy, and the move is then committed.";
    if (session == nullptr || tellIfRemote(*session, options.source, advice) ||
        tellIfRemote(*session, options.destination, advice)) {
        return ExitFailure;
    }
    const std::string from = absolutePath(options.source);
    const std::string to = absolutePath(options.destination);
    const auto source = SourceTreeFinder(*session, options.common).find(from);
    if (!source) {
        return ExitFailure;
    }
    const std::string top = source->tree->location().str();
    if (!source->tree->containsItemAtLocation(to)) {
        session->tell("\"" + printable(options.destination) +
                      "\" lies outside the working copy that holds \"" + printable(options.source) +
                      "\": " + printable(top));
        return ExitFailure;
    }
    const auto request = makeRequest(RequestTypeMove, *source, {clientPath(from)});
    // Unlike any other command, the client's move reads no revision there, and closing the name
    // would rename the item.
    request->setDestination(to);
    return makeChange(*session, {request, top}, options.common, summaryFromTo("Moved", options));
}

int makeDirectory(Session& session, const SourceTree& source, const std::string& directory,
                  const Options& options, const LogMessage* message) {
    const bool isRemote = isRepositoryURL(directory);
    const auto request = makeRequest(RequestTypeMakeDirectory, source);
    request->setDestination(closedClientPath(directory));
    if (message != nullptr) {
        request->setOptions({{QuenSourceControlRequestOptionMessage, message->text()}});
    }
    return makeChange(session, {request, isRemote ? "" : directory}, options.common,
                      [&](const Value& result, const ClientReport& report) {
                          return isRemote ? committedSummary(result, report)
                                          : "Made " + printable(directory) + ".";
                      });
}

/// One after another, since a request makes one.
int runMakeDirectoryCommand(const Options& options) {
    const auto session = Session::open(options.common, "mkdir");
    if (session == nullptr) {
        return ExitFailure;
    }
    LogMessage message(*session);
    const bool needsMessage =
        std::any_of(options.directories.begin(), options.directories.end(), isRepositoryURL);
    const bool hasMessage = needsMessage || !options.message.needsEditor();
    if (hasMessage && !message.obtain(options.message, options.directories)) {
        return ExitFailure;
    }
    int status = ExitSuccess;
    for (const std::string& directory : options.directories) {
        const auto source = SourceTreeFinder(*session, options.common).find(directory);
        status = source ? makeDirectory(*session, *source, directory, options,
                                        hasMessage ? &message : nullptr)
                        : ExitFailure;
        if (status != ExitSuccess) {
            break;
        }
    }
    return message.conclude(status);
}

int runMergeCommand(const Options& options) {
    const auto session = Session::open(options.common, "merge");
    if (session == nullptr) {
        return ExitFailure;
    }
    if (options.revisions.isGiven() && !options.revisions.isRange()) {
        session->tell("A merge takes two revisions, -r START:END: the changes after START are "
                      "merged, up to END.");
        return ExitUsage;
    }
    const auto source = SourceTreeFinder(*session, options.common).find(options.destination);
    const auto branch = branchLocation(*session, options.common, options.layout,
                                       options.destination, options.source);
    if (!source || !branch) {
        return session->failureStatus();
    }
    const auto request = makeRequest(RequestTypeMerge, *source, {clientPath(options.destination)});
    request->setDestination(*branch);
    request->setStartingRevision(startingRevisionFor(options.revisions.start));
    request->setEndingRevision(options.revisions.isRange() ? String(options.revisions.end)
                                                           : String());
    return makeChange(*session, {request, options.destination}, options.common,
                      [&](const Value& /*result*/, const ClientReport& report) {
                          return report.items() == 0
                                     ? "Nothing to merge from " + printable(options.source) + "."
                                     : "Merged " + counted(report.items(), "item") + " from " +
                                           printable(options.source) + ".";
                      });
}

void addCopyCommand(CommandLine& line) {
    const auto options = std::make_shared<Options>();
    CLI::App* const command = line.app.add_subcommand(
        "copy", "Copy an item, with its history, to a place in a working copy");
    command->add_option("SOURCE", options->source, "A path or URL")->required();
    command->add_option("DESTINATION", options->destination, "A path")->required();
    options->common.addTo(*command);
    runWhenGiven(line, *command, options, runCopyCommand);
}

void addMoveCommand(CommandLine& line) {
    const auto options = std::make_shared<Options>();
    CLI::App* const command = line.app.add_subcommand(
        "move", "Move or rename an item of a working copy; directories on the way are made");
    command->add_option("SOURCE", options->source, "A path")->required();
    command->add_option("DESTINATION", options->destination, "A path")->required();
    options->common.addTo(*command);
    runWhenGiven(line, *command, options, runMoveCommand);
}

void addMakeDirectoryCommand(CommandLine& line) {
    const auto options = std::make_shared<Options>();
    CLI::App* const command = line.app.add_subcommand(
        "mkdir", "Make directories in a working copy, or in the repository at once");
    options->message.addTo(*command);
    command->add_option("DIRECTORY", options->directories, "Paths or URLs")->required();
    options->common.addTo(*command);
    runWhenGiven(line, *command, options, runMakeDirectoryCommand);
}

void addMergeCommand(CommandLine& line) {
    const auto options = std::make_shared<Options>();
    CLI::App* const command = line.app.add_subcommand(
        "merge", "Merge what was changed on another branch into a working copy");
    addRevisionOption(*command, options->revisions, true,
                      "START:END: only what was changed after START, up to END");
    command->add_option("BRANCH", options->source, "A branch, `trunk`, a URL or ^/NAME")
        ->required();
    command->add_option("PATH", options->destination, "Where to (default: here)");
    options->layout.addTo(*command);
    options->common.addTo(*command);
    runWhenGiven(line, *command, options, runMergeCommand);
}

} // namespace

void addTreeEditCommands(CommandLine& line) {
    addCopyCommand(line);
    addMoveCommand(line);
    addMakeDirectoryCommand(line);
    addMergeCommand(line);
}

} // namespace quen::tools
