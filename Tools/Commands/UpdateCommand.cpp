#include "Host/Places/Locations.h"
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
    std::vector<std::string> paths{"."};
};

std::string updateSummary(const Value& /*result*/, const ClientReport& report) {
    return report.items() == 0 ? "Nothing to update: at" + revisionIn(report) + "."
                               : "Updated to" + revisionIn(report) + itemsIn(report) + ".";
}

int runUpdateCommand(Session& session, const Options& options) {
    const auto source = findSource(session, options.paths.front());
    if (!source) {
        return source.status();
    }
    const auto request = makeRequest(RequestTypeUpdate, *source, clientPaths(options.paths));
    request->setStartingRevision(startingRevisionFor(options.revision.start));
    return makeChange(session, {request, options.paths.front()}, updateSummary);
}

} // namespace

void addUpdateCommand(CommandLine& line) {
    const auto options = std::make_shared<Options>();
    Subcommand command =
        line.add("update", "Update a working copy; conflicting lines keep your version");
    addRevisionOption(command, options->revision, false, "Revision to update to (default: HEAD)");
    command.arguments("PATH", options->paths, "Files or directories (default: .)");
    runInSession<Options>(command, options, runUpdateCommand);
}

} // namespace quen::tools
