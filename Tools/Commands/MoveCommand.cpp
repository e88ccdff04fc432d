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

/// The tree that both ends of the move lie in.
Outcome<SourceTree> findTree(const Session& session, const Options& options) {
    for (const std::string& location : {options.source, options.destination}) {
        if (isRepositoryURL(location)) {
            return session.fail("\"" + printable(location) +
                                "\" is a URL. Items are moved in a working copy, and the move is "
                                "then committed.");
        }
    }
    const auto source = findSource(session, absolutePath(options.source));
    if (!source || source->tree->containsItemAtLocation(absolutePath(options.destination))) {
        return source;
    }
    return session.fail(
        "\"" + printable(options.destination) + "\" lies outside the working copy that holds \"" +
        printable(options.source) + "\": " + printable(source->tree->location().view()));
}

int runMoveCommand(Session& session, const Options& options) {
    const auto source = findTree(session, options);
    if (!source) {
        return source.status();
    }
    const auto request =
        makeRequest(RequestTypeMove, *source, {clientPath(absolutePath(options.source))});
    // Unlike any other command, the client's move reads no revision there, and closing the name
    // would rename the item.
    request->setDestination(absolutePath(options.destination));
    return makeChange(session, {request, source->tree->location().str()},
                      [&](const Value& /*result*/, const ChangeOutput& /*output*/) {
                          return "Moved " + printable(options.source) + " to " +
                                 printable(options.destination) + ".";
                      });
}

} // namespace

void addMoveCommand(CommandLine& line) {
    const auto options = std::make_shared<Options>();
    Subcommand command =
        line.add("move", "Move or rename an item, creating missing parent directories");
    command.argument("SOURCE", options->source, "Path to move").required();
    command.argument("DESTINATION", options->destination, "New path").required();
    runInSession<Options>(command, options, runMoveCommand);
}

} // namespace quen::tools
