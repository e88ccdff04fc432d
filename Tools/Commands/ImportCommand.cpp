#include "Host/Places/Locations.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Commands/Changes/Change.h"
#include "Tools/Commands/Changes/LogMessage.h"
#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/Places/SourceTreeFinder.h"

#include <memory>

namespace quen::tools {

namespace {

struct Options {
    CommonOptions common;
    MessageOptions message;
    std::string path;
    std::string url;
};

std::string importSummary(const Value& result, const ChangeOutput& output) {
    return output.revision().empty() ? "Nothing to import." : committedSummary(result, output);
}

int runImportCommand(Session& session, const Options& options) {
    const auto source = findSource(session, options.url);
    if (!source) {
        return source.status();
    }
    LogMessage message(session);
    if (!message.obtain(options.message, {options.path + " to " + options.url})) {
        return ExitFailure;
    }
    const auto request =
        makeRequest(RequestTypeImport, *source, {importedPath(options.path)},
                    {{QuenSourceControlRequestOptionMessage, message.text()},
                     {QuenSourceControlRequestOptionSourceLocation, clientPath(options.url)}});
    return message.conclude(makeChange(session, {request, ""}, importSummary));
}

} // namespace

void addImportCommand(CommandLine& line) {
    const auto options = std::make_shared<Options>();
    Subcommand command =
        line.add("import", "Add a directory or file to the repository without a working copy");
    options->message.addTo(command);
    command.argument("PATH", options->path, "Directory or file to import").required();
    command.argument("URL", options->url, "URL to create; the content of a directory goes into it")
        .required();
    runInSession<Options>(command, options, runImportCommand);
}

} // namespace quen::tools
