#include "Host/Places/Locations.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Commands/Changes/Change.h"
#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/Places/RevisionArguments.h"
#include "Tools/Commands/Places/SourceTreeFinder.h"

#include <memory>

namespace quen::tools {

namespace {

struct Options {
    CommonOptions common;
    RevisionRange revision;
    std::string url;
    std::string directory;
};

int runCheckoutCommand(Session& session, const Options& options) {
    const auto source = findSource(session, options.url);
    if (!source) {
        return source.status();
    }
    const std::string directory =
        options.directory.empty() ? directoryNameFor(options.url) : options.directory;
    const auto request = makeRequest(RequestTypeCheckout, *source, {clientPath(options.url)});
    request->setDestination(closedDirectory(directory));
    // The client's own default. Said, so that a URL that leads nowhere is told with its revision.
    request->setStartingRevision(
        startingRevisionFor(options.revision.isGiven() ? options.revision.start : "HEAD"));
    return makeChange(session, {request, directory, true},
                      [&](const Value& /*result*/, const ClientReport& report) {
                          return "Checked out" + revisionIn(report) + " to " +
                                 printable(directory) + itemsIn(report) + ".";
                      });
}

} // namespace

void addCheckoutCommand(CommandLine& line) {
    const auto options = std::make_shared<Options>();
    Subcommand command = line.add("checkout", "Create a working copy of a URL");
    addRevisionOption(command, options->revision, false, "Revision to check out (default: HEAD)");
    command.argument("URL", options->url, "URL to check out").required();
    command.argument("DIRECTORY", options->directory,
                     "Directory to create (default: the last part of the URL)");
    runInSession<Options>(command, options, runCheckoutCommand);
}

} // namespace quen::tools
