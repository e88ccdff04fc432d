#include "Host/Places/Locations.h"
#include "Tools/Commands/Changes/Change.h"
#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/Places/BranchLocation.h"
#include "Tools/Commands/Places/RevisionArguments.h"
#include "Tools/Commands/Places/SourceTreeFinder.h"

#include <memory>

namespace quen::tools {

namespace {

struct Options {
    CommonOptions common;
    LayoutOptions layout;
    RevisionRange revisions;
    std::string branch;
    std::string path = ".";
};

std::string mergeSummary(const ClientReport& report, const Options& options) {
    const std::string branch = printable(options.branch);
    return report.items() == 0
               ? "Nothing to merge from " + branch + "."
               : "Merged " + counted(report.items(), "item") + " from " + branch + ".";
}

int runMergeCommand(Session& session, const Options& options) {
    const RevisionRange& revisions = options.revisions;
    if (revisions.isGiven() && !revisions.isRange()) {
        session.tell("A merge takes two revisions, -r START:END: the changes after START are "
                     "merged, up to END.");
        return ExitUsage;
    }
    const auto source = findSource(session, options.path);
    if (!source) {
        return source.status();
    }
    const auto branch = branchLocation(session, options.layout, options.path, options.branch);
    if (!branch) {
        return branch.status();
    }
    const auto request = makeRequest(RequestTypeMerge, *source, {clientPath(options.path)});
    request->setDestination(*branch);
    request->setStartingRevision(startingRevisionFor(revisions.start));
    request->setEndingRevision(revisions.isRange() ? String(revisions.end) : String());
    return makeChange(session, {request, options.path},
                      [&](const Value& /*result*/, const ClientReport& report) {
                          return mergeSummary(report, options);
                      });
}

} // namespace

void addMergeCommand(CommandLine& line) {
    const auto options = std::make_shared<Options>();
    Subcommand command = line.add("merge", "Merge changes from another branch into a working copy");
    addRevisionOption(command, options->revisions, true,
                      "Merge only the changes made after START, up to END (START:END)");
    command.argument("BRANCH", options->branch, "Branch name, trunk, URL or ^/PATH").required();
    command.argument("PATH", options->path, "Working copy to merge into (default: .)");
    options->layout.addTo(command);
    runInSession<Options>(command, options, runMergeCommand);
}

} // namespace quen::tools
