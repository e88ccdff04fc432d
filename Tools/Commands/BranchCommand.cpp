#include "Host/HostSourceTrees.h"
#include "Host/Places/Locations.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Commands/BranchEditCommands.h"
#include "Tools/Commands/Places/SourceTreeFinder.h"
#include "Tools/Commands/Session/Records.h"
#include "Tools/Commands/Session/ShowRecords.h"

#include <CLI/CLI.hpp>
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
        std::cout << (name == QuenSourceControlTrunkBranchName ? "trunk" : printable(name.view()))
                  << '\n';
    }
}

void tellIfNone(const Session& session, const QuenSourceControlOperation& operation,
                const Options& options, const SourceTree& source) {
    const Array* const records = operation.result().array();
    if (records != nullptr && records->count() == 0 && !operation.error()) {
        session.tell("\"" + printable(options.path) + "\" lies on no branch: it is neither below " +
                     source.repository->trunkLocation().absoluteString().str() + " nor below " +
                     source.repository->branchesLocation().absoluteString().str() +
                     ". --trunk and --branches say where else they are.");
    }
}

int runBranchCommand(const Options& options) {
    const auto session = Session::open(options.common, "branch");
    if (session == nullptr) {
        return ExitFailure;
    }
    const auto source =
        SourceTreeFinder(*session, options.common).findWithLayout(options.path, options.layout);
    if (!source) {
        return ExitFailure;
    }
    const auto operation =
        session->perform(makeRequest(RequestTypeCurrentBranch, sourceAt(options.path, *source)));
    const int status = showRecords(*session, operation, options.common, printForPeople);
    if (operation != nullptr && !options.common.json) {
        tellIfNone(*session, *operation, options, *source);
    }
    return status;
}

} // namespace

void addBranchCommand(CommandLine& line) {
    auto options = std::make_shared<Options>();
    CLI::App* const command = line.app.add_subcommand(
        "branch", "Show which branch a working copy or URL is on; make or delete one");
    command->add_option("PATH", options->path, "A path or URL (default: here)");
    options->layout.addTo(*command);
    options->common.addTo(*command);
    addBranchEditCommands(line, *command);
    command->require_subcommand(0, 1);
    runWhenGiven(line, *command, options, runBranchCommand);
}

} // namespace quen::tools
