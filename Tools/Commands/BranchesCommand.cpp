#include "QuenFoundation/QuenSourceControlConstants.h"
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

void printForPeople(const Array& records) {
    for (const Value& record : records) {
        std::cout << shownText(*record.dictionary(), QuenSourceControlOperationNameKey) << '\n';
    }
}

int runBranchesCommand(const Options& options) {
    const auto session = Session::open(options.common, "branches");
    if (session == nullptr) {
        return ExitFailure;
    }
    const auto source =
        SourceTreeFinder(*session, options.common).findWithLayout(options.path, options.layout);
    if (!source) {
        return ExitFailure;
    }
    const auto operation = session->perform(makeRequest(RequestTypeListBranches, *source));
    return showRecords(*session, operation, options.common, printForPeople);
}

} // namespace

void addBranchesCommand(CommandLine& line) {
    auto options = std::make_shared<Options>();
    CLI::App* const command = line.app.add_subcommand("branches", "List the project's branches");
    command->add_option("PATH", options->path, "A path or URL in the project (default: here)");
    options->layout.addTo(*command);
    options->common.addTo(*command);
    runWhenGiven(line, *command, options, runBranchesCommand);
}

} // namespace quen::tools
