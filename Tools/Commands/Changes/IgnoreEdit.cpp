#include "Tools/Commands/Changes/IgnoreEdit.h"

#include "Foundation/PathComponents.h"
#include "Host/Places/Locations.h"
#include "Host/RunContext.h"
#include "Host/TaskErrors.h"
#include "Tools/Commands/Changes/Change.h"
#include "Tools/Commands/Changes/IgnoreListGuard.h"
#include "Tools/Commands/Places/SourceTreeFinder.h"
#include "Tools/Console/RunRecorder.h"

#include <algorithm>
#include <iterator>
#include <memory>

namespace quen::tools {

namespace {

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

bool tellOfUnusableNames(const Session& session, RequestType type, const IgnoreOptions& options) {
    bool isAnyUnusable = false;
    for (const std::string& path : options.paths) {
        const std::string problem = problemWithName(path, type);
        if (!problem.empty()) {
            session.tell("\"" + printable(path) + "\" " + problem);
            isAnyUnusable = true;
        }
    }
    return isAnyUnusable;
}

/// The operation looks only at how its queries end, not at the edits that follow from them.
Error errorOfEdits(const RunRecorder& recorder) {
    for (const RecordedRun& recorded : recorder.runs()) {
        if (recorded.invocation.operationClass != "SVNPropGetOperation") {
            if (Error error = errorOfRun(recorded.invocation, recorded.run, true)) {
                return error;
            }
        }
    }
    return {};
}

} // namespace

void IgnoreOptions::addTo(Subcommand& command) {
    command.arguments("NAME", paths, "Paths whose last part is a name or pattern").required();
}

int runIgnoreEdit(Session& session, RequestType type, const std::string& done,
                  const IgnoreOptions& options) {
    if (tellOfUnusableNames(session, type, options)) {
        return ExitFailure;
    }
    const auto source = findSource(session, options.paths.front());
    if (!source) {
        return source.status();
    }
    const auto recorder = std::make_shared<RunRecorder>(
        std::make_shared<IgnoreListGuard>(RunContext::current().toolRunner()));
    const RunContext::Scope scope(RunContext::current().withToolRunner(recorder));
    StringArray names;
    std::transform(options.paths.begin(), options.paths.end(), std::back_inserter(names),
                   pathWithDirectory);
    const Change change{makeRequest(type, *source, names), options.paths.front(), false,
                        Follow::nothing};
    const auto operation = session.perform(change.request, change.follow);
    if (operation && !(*operation)->error()) {
        (*operation)->setError(errorOfEdits(*recorder));
    }
    return finishChange(session, operation, change,
                        [&](const Value& /*result*/, const ClientReport& /*report*/) {
                            return done + " " + counted(names.size(), "name") + ".";
                        });
}

} // namespace quen::tools
