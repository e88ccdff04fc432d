#include "Host/Places/Locations.h"
#include "Host/Plans/Plans.h"
#include "Tools/Commands/Changes/LocalEdit.h"
#include "Tools/Commands/Changes/Losses.h"
#include "Tools/Commands/Changes/Transfer.h"
#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/Places/BranchLocation.h"
#include "Tools/Commands/Places/SourceTreeFinder.h"
#include "Tools/Commands/Session/HostQueries.h"
#include "Tools/Commands/Session/Records.h"

#include <algorithm>
#include <memory>
#include <vector>

namespace quen::tools {

namespace {

struct Options {
    CommonOptions common;
    LayoutOptions layout;
    bool isSure = false;
    std::string branch;
    std::string path = ".";
};

bool holds(const std::vector<StatusEntry>& entries, const String& path) {
    return std::any_of(entries.begin(), entries.end(),
                       [&](const StatusEntry& entry) { return entry.path == path; });
}

/// What is changed here goes along to the branch, and may meet what is there.
Outcome<Confirmation> concerns(const Session& session, const Options& options,
                               const QuenSourceControlRequest& request) {
    const std::vector<String> paths = absolutePaths({options.path});
    Confirmation confirmation("These are in no revision, and would be taken along to " +
                                  printable(options.branch) + ":",
                              "Switch all the same?");
    const SwitchPlan plan = planSwitchOfWork(paths.front(), request.destination(), runHostQuery);
    if (plan.error) {
        return Losses::explain(session, plan.error, &request);
    }
    for (const StatusEntry& entry : plan.localChanges) {
        const bool isChangedThere = holds(plan.changedOnBothSides, entry.path);
        confirmation.add(wordsForItem(entry) + (isChangedThere ? ", different there" : ""),
                         shownPath(entry.path.view()));
    }
    for (const StatusEntry& entry : plan.inTheWay) {
        confirmation.add(wordsForItem(entry) + ", in the way", shownPath(entry.path.view()));
    }
    return confirmation;
}

int runSwitchCommand(Session& session, const Options& options) {
    const auto source = findSource(session, options.path);
    if (!source) {
        return source.status();
    }
    const auto branch = branchLocation(session, options.layout, options.path, options.branch);
    if (!branch) {
        return branch.status();
    }
    const auto request = makeRequest(RequestTypeSwitch, *source, {clientPath(options.path)});
    request->setDestination(*branch);
    const auto confirmation = concerns(session, options, *request);
    if (!confirmation) {
        return confirmation.status();
    }
    if (const int status = confirmation->obtain(session, options.isSure); status != ExitSuccess) {
        return status;
    }
    return makeTransfer(session, {{request, options.path}, [&](const ChangeFacts& facts) {
                                      return "Switched to " + printable(options.branch) +
                                             itemsIn(facts) + ".";
                                  }});
}

} // namespace

void addSwitchCommand(CommandLine& line) {
    const auto options = std::make_shared<Options>();
    Subcommand command = line.add("switch", "Switch a working copy to another branch");
    command.argument("BRANCH", options->branch, "Branch name, trunk, URL or ^/PATH").required();
    command.argument("PATH", options->path, "Working copy to switch (default: .)");
    addYesOption(command, options->isSure);
    options->layout.addTo(command);
    runInSession<Options>(command, options, runSwitchCommand);
}

} // namespace quen::tools
