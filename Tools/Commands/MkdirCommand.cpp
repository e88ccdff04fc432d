#include "Host/Places/Locations.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Commands/Changes/Change.h"
#include "Tools/Commands/Changes/LogMessage.h"
#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/Places/ItemPlace.h"
#include "Tools/Commands/Places/SourceTreeFinder.h"
#include "Tools/Commands/Session/HostQueries.h"

#include <algorithm>
#include <memory>

namespace quen::tools {

namespace {

struct Options {
    CommonOptions common;
    MessageOptions message;
    bool makesParents = false;
    std::vector<std::string> directories;
};

int makeDirectory(Session& session, const std::string& directory, const Dictionary& options) {
    const auto source = findSource(session, directory);
    if (!source) {
        return source.status();
    }
    const bool isRemote = isRepositoryURL(directory);
    const auto request = makeRequest(RequestTypeMakeDirectory, *source, {}, options);
    request->setDestination(closedClientPath(directory));
    return makeChange(session, {request, isRemote ? "" : directory},
                      [&](const Value& result, const ChangeOutput& output) {
                          return isRemote ? committedSummary(result, output)
                                          : "Created " + printable(directory) + ".";
                      });
}

/// As a directory, on the disk or in the repository.
bool isThere(const std::string& directory) {
    if (!isRepositoryURL(directory)) {
        return isDirectory(directory);
    }
    const auto item = infoOf(directory);
    return item && item->kind == "dir";
}

/// The client's own command, since the provider's makes no parents. In the repository all of them
/// are one commit.
int makeWithParents(Session& session, const Options& options, const String& message) {
    std::vector<std::string> words{"mkdir", "--parents"};
    const bool isRemote = isRepositoryURL(options.directories.front());
    if (isRemote) {
        const auto source = findSource(session, options.directories.front());
        if (!source) {
            return source.status();
        }
        const auto user = userOption(*source);
        words.insert(words.end(), user.begin(), user.end());
        words.insert(words.end(), {"-m", message.str()});
    }
    std::vector<std::string> paths;
    for (const std::string& directory : options.directories) {
        if (!isThere(directory)) {
            paths.push_back(isRemote ? directory : absolutePaths({directory}).front().str());
        }
    }
    if (paths.empty()) {
        return tellNothingToDo(session, "Nothing to create.");
    }
    const auto performed = session.performCommand(words, paths, RequestTypeMakeDirectory);
    return finishChange(session, performed, {nullptr, isRemote ? "" : paths.front()},
                        [&](const Value& result, const ChangeOutput& output) {
                            return isRemote ? committedSummary(result, output)
                                            : "Created " + counted(output.items(), "item") + ".";
                        });
}

/// One after another, since a request makes one.
int makeDirectories(Session& session, const Options& options, const Dictionary& requestOptions) {
    int status = ExitSuccess;
    for (const std::string& directory : options.directories) {
        status = makeDirectory(session, directory, requestOptions);
        if (status != ExitSuccess) {
            break;
        }
    }
    return status;
}

int runMkdirCommand(Session& session, const Options& options) {
    const bool needsMessage =
        std::any_of(options.directories.begin(), options.directories.end(), isRepositoryURL);
    const bool isMixed = needsMessage && !std::all_of(options.directories.begin(),
                                                      options.directories.end(), isRepositoryURL);
    if (isMixed && options.makesParents) {
        return session.fail("--parents takes either paths or URLs, not both.", ExitUsage).status;
    }
    if (!needsMessage && options.message.needsEditor()) {
        return options.makesParents ? makeWithParents(session, options, String())
                                    : makeDirectories(session, options, Dictionary());
    }
    LogMessage message(session);
    if (!message.obtain(options.message, options.directories)) {
        return ExitFailure;
    }
    return message.conclude(
        options.makesParents
            ? makeWithParents(session, options, message.text())
            : makeDirectories(session, options,
                              {{QuenSourceControlRequestOptionMessage, message.text()}}));
}

} // namespace

void addMkdirCommand(CommandLine& line) {
    const auto options = std::make_shared<Options>();
    Subcommand command =
        line.add("mkdir", "Create directories in a working copy, or directly in the repository");
    options->message.addTo(command);
    command.flag("-p,--parents", options->makesParents,
                 "Also create the directories above that are missing");
    command.arguments("DIRECTORY", options->directories, "Paths or URLs to create").required();
    runInSession<Options>(command, options, runMkdirCommand);
}

} // namespace quen::tools
