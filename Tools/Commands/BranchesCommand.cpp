#include "QuenFoundation/QuenSourceControlConstants.h"
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

void printForPeople(const Array& records) {
    for (const Value& record : records) {
        std::cout << shownText(*record.dictionary(), QuenSourceControlOperationNameKey) << '\n';
    }
}

int runBranchesCommand(Session& session, const Options& options) {
    const auto source = findSourceWithLayout(session, options.path, options.layout);
    if (!source) {
        return source.status();
    }
    const auto operation = session.perform(makeRequest(RequestTypeListBranches, *source));
    return showRecords(session, operation, printForPeople);
}

} // namespace

void addBranchesCommand(CommandLine& line) {
    auto options = std::make_shared<Options>();
    Subcommand command = line.add("branches", "List the project's branches");
    command.argument("PATH", options->path, "Path or URL in the project (default: .)");
    options->layout.addTo(command);
    runInSession<Options>(command, options, runBranchesCommand);
}

} // namespace quen::tools
