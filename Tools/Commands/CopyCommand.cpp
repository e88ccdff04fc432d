#include "Host/Places/Locations.h"
#include "Tools/Commands/Changes/Change.h"
#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/Places/SourceTreeFinder.h"

#include <memory>

namespace quen::tools {

namespace {

struct Options {
    CommonOptions common;
    std::string source;
    std::string destination;
};

int runCopyCommand(Session& session, const Options& options) {
    if (isRepositoryURL(options.destination)) {
        const Explained failure =
            session.fail("\"" + printable(options.destination) +
                         "\" is a URL. Copies within the repository are made by: quen branch "
                         "create");
        return failure.status;
    }
    // About the working copy that is written to, also where the source is a URL.
    const auto source = findSource(session, options.destination);
    if (!source) {
        return source.status();
    }
    const auto request = makeRequest(RequestTypeCopy, *source, {clientPath(options.source)});
    request->setDestination(closedClientPath(options.destination));
    return makeChange(session, {request, options.destination},
                      [&](const Value& /*result*/, const ChangeOutput& /*output*/) {
                          return "Copied " + printable(options.source) + " to " +
                                 printable(options.destination) + ".";
                      });
}

} // namespace

void addCopyCommand(CommandLine& line) {
    const auto options = std::make_shared<Options>();
    Subcommand command =
        line.add("copy", "Copy an item to a place in a working copy, keeping its history");
    command.argument("SOURCE", options->source, "Path or URL to copy").required();
    command.argument("DESTINATION", options->destination, "Path of the copy").required();
    runInSession<Options>(command, options, runCopyCommand);
}

} // namespace quen::tools
