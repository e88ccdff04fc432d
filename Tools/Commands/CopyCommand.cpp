#include "Host/Places/Locations.h"
#include "Tools/Commands/Changes/Change.h"
#include "Tools/Commands/Changes/TreeEdit.h"
#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/Places/SourceTreeFinder.h"

#include <memory>

namespace quen::tools {

namespace {

int copyItem(Session& session, const std::string& from, const std::string& to) {
    if (isRepositoryURL(to)) {
        const Explained failure =
            session.fail("\"" + printable(to) +
                         "\" is a URL. Copies within the repository are made by: quen branch "
                         "create");
        return failure.status;
    }
    // About the working copy that is written to, also where the source is a URL.
    const auto source = findSource(session, to);
    if (!source) {
        return source.status();
    }
    const auto request = makeRequest(RequestTypeCopy, *source, {clientPath(from)});
    request->setDestination(closedClientPath(to));
    return makeChange(session, {request, to},
                      [&](const Value& /*result*/, const ChangeOutput& /*output*/) {
                          return "Copied " + printable(from) + " to " + printable(to) + ".";
                      });
}

int runCopyCommand(Session& session, const TreeEditOptions& options) {
    return runTreeEdit(session, options,
                       [&](const std::string& source, const std::string& destination) {
                           return copyItem(session, source, destination);
                       });
}

} // namespace

void addCopyCommand(CommandLine& line) {
    const auto options = std::make_shared<TreeEditOptions>();
    Subcommand command =
        line.add("copy", "Copy items to a place in a working copy, keeping their history");
    options->addTo(command, "Paths or URLs to copy, then where to: a new path, or a "
                            "directory to put them into");
    runInSession<TreeEditOptions>(command, options, runCopyCommand);
}

} // namespace quen::tools
