#include "Host/Places/Locations.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Commands/Changes/Change.h"
#include "Tools/Commands/Changes/ChangeList.h"
#include "Tools/Commands/Changes/LogMessage.h"
#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/Places/SourceTreeFinder.h"

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

int runCommitCommand(Session& session, const Options& options) {
    const auto source = findSource(session, options.paths.front());
    if (!source) {
        return source.status();
    }
    std::vector<std::string> changes;
    if (options.message.needsEditor()) {
        const auto found = linesOfChanges(session, *source, options.paths, committedChanges);
        if (!found) {
            return found.status();
        }
        if (found->empty()) {
            return tellNothingToCommit(options);
        }
        changes = *found;
    }
    LogMessage message(session);
    if (!message.obtain(options.message, changes)) {
        return ExitFailure;
    }
    const auto request = makeRequest(RequestTypeCommit, *source, clientPaths(options.paths),
                                     {{QuenSourceControlRequestOptionMessage, message.text()}});
    return message.conclude(makeChange(session, {request, options.paths.front()}, summaryOf));
}

} // namespace

void addCommitCommand(CommandLine& line) {
    const auto options = std::make_shared<Options>();
    Subcommand command = line.add("commit", "Commit local changes");
    options->message.addTo(command);
    command.arguments("PATH", options->paths, "Files or directories (default: .)");
    runInSession<Options>(command, options, runCommitCommand);
}

} // namespace quen::tools
