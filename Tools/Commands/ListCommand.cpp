#include "Host/Places/Locations.h"
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
    std::string path = ".";
};

void printForPeople(const Array& records, const Options& options) {
    const Palette palette = options.common.palette();
    for (const Value& value : records) {
        const Dictionary& record = *value.dictionary();
        const std::string name = shownText(record, QuenSourceControlOperationNameKey);
        const bool isDirectory = !record[QuenSourceControlOperationIsLeafKey].boolValue();
        std::cout << (isDirectory ? palette.paint(Style::changed, name + "/") : name) << '\n';
    }
}

int runListCommand(const Options& options) {
    const auto session = Session::open(options.common, "list");
    if (session == nullptr) {
        return ExitFailure;
    }
    const auto source = SourceTreeFinder(*session, options.common).find(options.path);
    if (!source) {
        return ExitFailure;
    }
    const auto operation =
        session->perform(makeRequest(RequestTypeList, *source, {clientPath(options.path)}));
    return showRecords(*session, operation, options.common,
                       [&](const Array& records) { printForPeople(records, options); });
}

} // namespace

void addListCommand(CommandLine& line) {
    auto options = std::make_shared<Options>();
    CLI::App* const command =
        line.app.add_subcommand("list", "List what a directory of the repository holds");
    command->add_option("PATH", options->path, "A path or URL (default: here)");
    options->common.addTo(*command);
    runWhenGiven(line, *command, options, runListCommand);
}

} // namespace quen::tools
