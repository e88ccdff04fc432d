#include "Host/Places/Locations.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Commands/Changes/Change.h"
#include "Tools/Commands/Changes/LogMessage.h"
#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/Places/SourceTreeFinder.h"

#include <algorithm>
#include <memory>

namespace quen::tools {

namespace {

struct Options {
    CommonOptions common;
    MessageOptions message;
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
                                          : "Made " + printable(directory) + ".";
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
    if (!needsMessage && options.message.needsEditor()) {
        return makeDirectories(session, options, Dictionary());
    }
    LogMessage message(session);
    if (!message.obtain(options.message, options.directories)) {
        return ExitFailure;
    }
    return message.conclude(makeDirectories(
        session, options, {{QuenSourceControlRequestOptionMessage, message.text()}}));
}

} // namespace

void addMkdirCommand(CommandLine& line) {
    const auto options = std::make_shared<Options>();
    Subcommand command =
        line.add("mkdir", "Create directories in a working copy, or directly in the repository");
    options->message.addTo(command);
    command.arguments("DIRECTORY", options->directories, "Paths or URLs to create").required();
    runInSession<Options>(command, options, runMkdirCommand);
}

} // namespace quen::tools
