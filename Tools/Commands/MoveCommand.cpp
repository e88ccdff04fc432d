#include "Host/Places/Locations.h"
#include "Tools/Commands/Changes/Change.h"
#include "Tools/Commands/Changes/TreeEdit.h"
#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/Places/SourceTreeFinder.h"

#include <memory>

namespace quen::tools {

namespace {

/// The tree that both ends of the move lie in.
Outcome<SourceTree> findTree(const Session& session, const std::string& from,
                             const std::string& to) {
    for (const std::string& location : {from, to}) {
        if (isRepositoryURL(location)) {
            return session.fail("\"" + printable(location) +
                                "\" is a URL. Items are moved in a working copy, and the move is "
                                "then committed.");
        }
    }
    const auto source = findSource(session, absolutePath(from));
    if (!source || source->tree->containsItemAtLocation(absolutePath(to))) {
        return source;
    }
    return session.fail("\"" + printable(to) + "\" lies outside the working copy that holds \"" +
                        printable(from) + "\": " + printable(source->tree->location().view()));
}

int moveItem(Session& session, const std::string& from, const std::string& to) {
    const auto source = findTree(session, from, to);
    if (!source) {
        return source.status();
    }
    const auto request = makeRequest(RequestTypeMove, *source, {clientPath(absolutePath(from))});
    // Unlike any other command, the client's move reads no revision there, and closing the name
    // would rename the item.
    request->setDestination(absolutePath(to));
    return makeChange(session, {request, source->tree->location().str()},
                      [&](const Value& /*result*/, const ChangeOutput& /*output*/) {
                          return "Moved " + printable(from) + " to " + printable(to) + ".";
                      });
}

int runMoveCommand(Session& session, const TreeEditOptions& options) {
    return runTreeEdit(session, options,
                       [&](const std::string& source, const std::string& destination) {
                           return moveItem(session, source, destination);
                       });
}

} // namespace

void addMoveCommand(CommandLine& line) {
    const auto options = std::make_shared<TreeEditOptions>();
    Subcommand command =
        line.add("move", "Move or rename items, creating missing parent directories");
    options->addTo(command, "Paths to move, then where to: a new path, or a directory to "
                            "put them into");
    runInSession<TreeEditOptions>(command, options, runMoveCommand);
}

} // namespace quen::tools
