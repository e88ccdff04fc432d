#include "Host/Places/BranchNames.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/Content/NamedPlaces.h"
#include "Tools/Commands/Places/ItemPlace.h"
#include "Tools/Commands/Session/ShowRecords.h"

#include <algorithm>
#include <iostream>
#include <memory>

namespace quen::tools {

namespace {

struct Options {
    CommonOptions common;
    LayoutOptions layout;
    std::string path = ".";
};

/// The trunk, where it is where it is said to be, and the branches by name.
std::vector<ListEntry> trunkAndBranches(std::vector<ListEntry> entries, const std::string& trunk,
                                        const std::string& branches) {
    std::vector<ListEntry> places;
    for (ListEntry& entry : entries) {
        const std::string url = entry.location.str() + "/" + encodedName(entry.name.view());
        if (url == trunk) {
            entry.name = "trunk";
            places.insert(places.begin(), std::move(entry));
        } else if (entry.location == branches && entry.kind == "dir") {
            places.push_back(std::move(entry));
        }
    }
    return places;
}

int showForPeople(Session& session, const SourceTree& source, const Options& options) {
    const RepositoryLayout layout{source.repository->trunkLocation().absoluteString().str(),
                                  source.repository->branchesLocation().absoluteString().str()};
    std::vector<std::string> directories{layout.branches};
    const std::string aboveTrunk = layout.trunk.substr(0, layout.trunk.rfind('/'));
    if (aboveTrunk != layout.branches) {
        directories.insert(directories.begin(), aboveTrunk);
    }
    auto entries = entriesOf(session, source, directories);
    if (!entries) {
        return entries.status();
    }
    const auto item = infoOf(options.path);
    const std::string current = item ? branchNameOf(item->url.view(), layout) : "";
    const auto places = trunkAndBranches(std::move(*entries), layout.trunk, layout.branches);
    printNamedPlaces(places, current.empty() ? "-" : current, options.common.palette());
    const bool hasBranches = std::any_of(places.begin(), places.end(), [&](const ListEntry& place) {
        return place.location == layout.branches;
    });
    if (!hasBranches) {
        std::cout.flush();
        session.tell("There are no branches in " + layout.branches + ".");
    }
    return ExitSuccess;
}

int runBranchesCommand(Session& session, const Options& options) {
    const auto source = findSourceWithLayout(session, options.path, options.layout);
    if (!source) {
        return source.status();
    }
    if (!options.common.json) {
        return showForPeople(session, *source, options);
    }
    const auto operation = session.perform(makeRequest(RequestTypeListBranches, *source));
    return showRecords(session, operation, [](const Array& /*records*/) {});
}

} // namespace

void addBranchesCommand(CommandLine& line) {
    auto options = std::make_shared<Options>();
    Subcommand command =
        line.add("branches", "List the trunk and the branches, with their last changes");
    command.argument("PATH", options->path, "Path or URL in the project (default: .)");
    options->layout.addTo(command);
    runInSession<Options>(command, options, runBranchesCommand);
}

} // namespace quen::tools
