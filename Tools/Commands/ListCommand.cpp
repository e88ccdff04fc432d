#include "Host/Places/Locations.h"
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

int runListCommand(Session& session, const Options& options) {
    const auto source = findSource(session, options.path);
    if (!source) {
        return source.status();
    }
    const auto operation =
        session.perform(makeRequest(RequestTypeList, *source, {clientPath(options.path)}));
    return showRecords(session, operation,
                       [&](const Array& records) { printForPeople(records, options); });
}

} // namespace

void addListCommand(CommandLine& line) {
    auto options = std::make_shared<Options>();
    Subcommand command = line.add("list", "List the entries of a directory in the repository");
    command.argument("PATH", options->path, "Path or URL (default: .)");
    runInSession<Options>(command, options, runListCommand);
}

} // namespace quen::tools
