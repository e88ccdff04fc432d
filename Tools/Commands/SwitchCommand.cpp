#include "Host/Places/Locations.h"
#include "Tools/Commands/Changes/Change.h"
#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/Places/BranchLocation.h"
#include "Tools/Commands/Places/SourceTreeFinder.h"

#include <memory>

namespace quen::tools {

namespace {

struct Options {
    CommonOptions common;
    LayoutOptions layout;
    std::string branch;
    std::string path = ".";
};

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
    return makeChange(session, {request, options.path},
                      [&](const Value& /*result*/, const ClientReport& report) {
                          return "Switched to " + printable(options.branch) + itemsIn(report) + ".";
                      });
}

} // namespace

void addSwitchCommand(CommandLine& line) {
    const auto options = std::make_shared<Options>();
    Subcommand command = line.add("switch", "Switch a working copy to another branch");
    command.argument("BRANCH", options->branch, "Branch name, trunk, URL or ^/PATH").required();
    command.argument("PATH", options->path, "Working copy to switch (default: .)");
    options->layout.addTo(command);
    runInSession<Options>(command, options, runSwitchCommand);
}

} // namespace quen::tools
