#include "Foundation/PercentCoding.h"
#include "Host/HostSourceTrees.h"
#include "Host/Places/Locations.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Commands/BranchEditCommands.h"
#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/Places/SourceTreeFinder.h"
#include "Tools/Commands/Session/Records.h"
#include "Tools/Commands/Session/ShowRecords.h"

#include <iostream>
#include <memory>

namespace quen::tools {

namespace {

struct Options {
    CommonOptions common;
    LayoutOptions layout;
    std::string path = ".";
};

/// The query is about a source tree's location, not about files: a tree that lies at the path.
SourceTree sourceAt(const std::string& path, const SourceTree& source) {
    HostWorkingTree::Facts tree;
    tree.name = source.tree->name();
    tree.location = closedClientPath(path);
    tree.repository = source.repository;
    return {std::make_shared<HostWorkingTree>(std::move(tree)), source.repository};
}

void printForPeople(const Array& records) {
    for (const Value& value : records) {
        const Dictionary& record = *value.dictionary();
        const String name = record[QuenSourceControlOperationNameKey].stringValue();
        std::cout << (name == QuenSourceControlTrunkBranchName
                          ? "trunk"
                          : printable(percentDecoded(name.view())))
                  << '\n';
    }
}

void tellIfNone(const Session& session, const QuenSourceControlOperation& operation,
                const Options& options, const SourceTree& source) {
    const Array* const records = operation.result().array();
    if (records != nullptr && records->count() == 0 && !operation.error()) {
        session.tell("\"" + options.path + "\" is not on a branch: it is neither below " +
                     source.repository->trunkLocation().absoluteString().str() + " nor below " +
                     source.repository->branchesLocation().absoluteString().str() +
                     ". Use --trunk and --branches to say where they are.");
    }
}

int runBranchCommand(Session& session, const Options& options) {
    const auto source = findSourceWithLayout(session, options.path, options.layout);
    if (!source) {
        return source.status();
    }
    const auto operation =
        session.perform(makeRequest(RequestTypeCurrentBranch, sourceAt(options.path, *source)));
    const int status = showRecords(session, operation, printForPeople);
    if (operation && !options.common.json) {
        tellIfNone(session, **operation, options, *source);
    }
    return status;
}

} // namespace

void addBranchCommand(CommandLine& line) {
    auto options = std::make_shared<Options>();
    Subcommand command = line.add("branch", "Show the current branch; create or delete a branch");
    command.argument("PATH", options->path, "Path or URL (default: .)");
    options->layout.addTo(command);
    runInSession<Options>(command, options, runBranchCommand);
    addBranchEditCommands(command);
}

} // namespace quen::tools
