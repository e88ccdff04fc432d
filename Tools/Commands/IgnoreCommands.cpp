#include "Foundation/PathComponents.h"
#include "Host/ClientMessage.h"
#include "Host/Places/Locations.h"
#include "Host/RunContext.h"
#include "Host/TaskErrors.h"
#include "Tools/Commands/Changes/Change.h"
#include "Tools/Commands/Changes/IgnoreListGuard.h"
#include "Tools/Commands/Places/SourceTreeFinder.h"
#include "Tools/Console/RunRecorder.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iterator>
#include <memory>

namespace quen::tools {

namespace {

struct Options {
    CommonOptions common;
    std::vector<std::string> paths;
};

/// What the siblings differ in.
struct Edit {
    std::string name;
    RequestType type;
    std::string done;
};

/// The plug-in takes the directory from the path, so that a bare name must say where it lies.
std::string pathWithDirectory(const std::string& path) {
    return path.find('/') == std::string::npos ? "./" + path : path;
}

/// Why a name cannot be in a list that the plug-in writes, with the pattern that can; empty for one
/// that can.
std::string problemWithName(const std::string& path, RequestType type) {
    std::string name(lastPathComponent(path));
    if (name.find('@') != std::string::npos) {
        // It would be closed for the client, and get into the list like that.
        std::replace(name.begin(), name.end(), '@', '?');
        return "holds an @, which cannot be written to the list of ignored names. The pattern \"" +
               printable(name) + "\" matches it.";
    }
    if (name.starts_with('-') && type == RequestTypeIgnore) {
        return "begins with -, which would be taken for an option. The pattern \"[-]" +
               printable(name.substr(1)) + "\" matches it.";
    }
    return {};
}

bool tellOfUnusableNames(const Session& session, const Edit& edit, const Options& options) {
    bool isAnyUnusable = false;
    for (const std::string& path : options.paths) {
        const std::string problem = problemWithName(path, edit.type);
        if (!problem.empty()) {
            session.tell("\"" + printable(path) + "\" " + problem);
            isAnyUnusable = true;
        }
    }
    return isAnyUnusable;
}

/// How a client run failed; nil where it did not.
Error errorOfRun(const RecordedRun& recorded) {
    if (const Error interrupted = errorOfInterruptedRun(recorded.invocation, recorded.run, true)) {
        return interrupted;
    }
    const ClientMessage message = readClientMessage(recorded.run.errors->bytes());
    const RunFacts facts{recorded.run.exitStatus, recorded.run.signal, message.numbers};
    const Error error = genericError(message.text, facts);
    return error ? error : errorOfSilentFailure(facts);
}

/// The operation looks only at how its queries end, not at the edits that follow from them.
Error errorOfEdits(const RunRecorder& recorder) {
    for (const RecordedRun& recorded : recorder.runs()) {
        if (recorded.invocation.operationClass != "SVNPropGetOperation") {
            if (Error error = errorOfRun(recorded)) {
                return error;
            }
        }
    }
    return {};
}

int runEdit(const Edit& edit, const Options& options) {
    const auto session = Session::open(options.common, edit.name);
    if (session == nullptr || tellOfUnusableNames(*session, edit, options)) {
        return ExitFailure;
    }
    const auto source = SourceTreeFinder(*session, options.common).find(options.paths.front());
    if (!source) {
        return ExitFailure;
    }
    const auto recorder = std::make_shared<RunRecorder>(
        std::make_shared<IgnoreListGuard>(RunContext::current().toolRunner()));
    const RunContext::Scope scope(RunContext::current().withToolRunner(recorder));
    StringArray names;
    std::transform(options.paths.begin(), options.paths.end(), std::back_inserter(names),
                   pathWithDirectory);
    const Change change{makeRequest(edit.type, *source, names), options.paths.front(), false,
                        Follow::nothing};
    const auto operation = session->perform(change.request, change.follow);
    if (operation != nullptr && !operation->error()) {
        operation->setError(errorOfEdits(*recorder));
    }
    return finishChange(*session, operation, change, options.common,
                        [&](const Value& /*result*/, const ClientReport& /*report*/) {
                            return edit.done + " " + counted(names.size(), "name") + ".";
                        });
}

void addEdit(CommandLine& line, const Edit& edit, const std::string& help) {
    auto options = std::make_shared<Options>();
    CLI::App* const command = line.app.add_subcommand(edit.name, help);
    command->add_option("NAME", options->paths, "Paths whose last part is a name or pattern")
        ->required();
    options->common.addTo(*command);
    command->callback(
        [&line, edit, options] { line.run = [edit, options] { return runEdit(edit, *options); }; });
}

} // namespace

void addIgnoreCommands(CommandLine& line) {
    addEdit(line, {"ignore", RequestTypeIgnore, "Ignored"},
            "Add names or patterns to the ignored ones of their directories");
    addEdit(line, {"unignore", RequestTypeUnignore, "No longer ignored:"},
            "Take names or patterns out of the ignored ones of their directories");
}

} // namespace quen::tools
