#include "Host/Places/Locations.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Commands/Changes/Change.h"
#include "Tools/Commands/Changes/ChangeList.h"
#include "Tools/Commands/Changes/LogMessage.h"
#include "Tools/Commands/Places/SourceTreeFinder.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>

namespace quen::tools {

namespace {

struct Options {
    CommonOptions common;
    MessageOptions message;
    std::vector<std::string> paths{"."};
};

int tellNothingToCommit(const Options& options) {
    if (options.common.json) {
        printJson(Value());
    } else {
        std::cout << "Nothing to commit.\n";
    }
    return ExitSuccess;
}

std::string summaryOf(const Value& result, const ClientReport& /*report*/) {
    const Array* const records = result.array();
    if (records == nullptr || records->count() == 0) {
        return "Nothing to commit.";
    }
    const Dictionary& record = *(*records)[0].dictionary();
    return "Committed revision " +
           record[QuenSourceControlOperationRevisionKey].stringValue().str() + ".";
}

int runCommitCommand(const Options& options) {
    const auto session = Session::open(options.common, "commit");
    if (session == nullptr) {
        return ExitFailure;
    }
    const auto source = SourceTreeFinder(*session, options.common).find(options.paths.front());
    if (!source) {
        return ExitFailure;
    }
    std::vector<std::string> changes;
    if (options.message.needsEditor()) {
        int status = ExitSuccess;
        const auto found =
            linesOfChanges(*session, *source, options.paths, committedChanges, status);
        if (!found) {
            return status;
        }
        if (found->empty()) {
            return tellNothingToCommit(options);
        }
        changes = *found;
    }
    LogMessage message(*session);
    if (!message.obtain(options.message, changes)) {
        return ExitFailure;
    }
    const auto request = makeRequest(RequestTypeCommit, *source, clientPaths(options.paths),
                                     {{QuenSourceControlRequestOptionMessage, message.text()}});
    return message.conclude(
        makeChange(*session, {request, options.paths.front()}, options.common, summaryOf));
}

} // namespace

void addCommitCommand(CommandLine& line) {
    const auto options = std::make_shared<Options>();
    CLI::App* const command =
        line.app.add_subcommand("commit", "Send the changes of a working copy to the repository");
    options->message.addTo(*command);
    command->add_option("PATH", options->paths, "Files or directories (default: here)");
    options->common.addTo(*command);
    runWhenGiven(line, *command, options, runCommitCommand);
}

} // namespace quen::tools
