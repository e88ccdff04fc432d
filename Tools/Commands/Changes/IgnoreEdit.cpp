#include "Tools/Commands/Changes/IgnoreEdit.h"

#include "Foundation/PathComponents.h"
#include "Host/IgnoreEdits.h"
#include "Host/IgnoreLists.h"
#include "Host/Places/Locations.h"
#include "Host/RunContext.h"
#include "Tools/Commands/Changes/Change.h"
#include "Tools/Commands/Places/SourceTreeFinder.h"
#include "Tools/Commands/Session/HostQueries.h"
#include "Tools/Terminal/InterruptWatch.h"

#include <algorithm>
#include <iterator>
#include <memory>

namespace quen::tools {

namespace {

/// The plug-in takes the directory from the path, so that a bare name must say where it lies.
std::string pathWithDirectory(const std::string& path) {
    return path.find('/') == std::string::npos ? "./" + path : path;
}

std::string asTyped(const String& path) {
    const std::string typed = path.str();
    return typed.starts_with("./") ? typed.substr(2) : typed;
}

/// How often it is tried where others write at the same time.
constexpr int mostTries = 5;

/// Explained where one of the names cannot be used: then none is.
Outcome<bool> check(const Session& session, RequestType type, const std::vector<String>& paths) {
    const IgnorePlan plan = planIgnore(paths, type, runHostQuery);
    if (InterruptWatch::wasInterrupted()) {
        return session.fail("Interrupted.", ExitInterrupted);
    }
    if (plan.error) {
        session.tell(plan.error);
        return Explained{ExitFailure};
    }
    for (const IgnoreProblem& problem : plan.problems) {
        session.tell("\"" + asTyped(problem.path) + "\" " + problem.reason.str());
    }
    if (!plan.problems.empty() && paths.size() > 1) {
        session.tell("Nothing was changed.");
    }
    return plan.problems.empty() ? Outcome<bool>(true) : Outcome<bool>(Explained{ExitFailure});
}

/// Makes the edit, and again where a list was written by somebody else meanwhile.
Outcome<QuenSourceControlOperationPtr>
perform(Session& session, RequestType type, const SourceTree& source, std::vector<String> paths) {
    const auto edits = std::make_shared<IgnoreEditRunner>(RunContext::current().toolRunner());
    const RunContext editing = RunContext::current().withToolRunner(edits);
    for (int tries = 1;; ++tries) {
        const auto request = makeRequest(type, source, StringArray(paths.begin(), paths.end()));
        auto operation = [&] {
            const RunContext::Scope scope(editing);
            return session.perform(request, Follow::nothing);
        }();
        if (!operation) {
            return operation;
        }
        if (!(*operation)->error()) {
            (*operation)->setError(edits->error());
        }
        if ((*operation)->error() || session.wasStopped(**operation) || session.options().dryRun) {
            return operation;
        }
        paths = undoneIgnores(paths, type, runHostQuery);
        if (paths.empty() || InterruptWatch::wasInterrupted()) {
            return operation;
        }
        if (tries == mostTries) {
            return session.fail("\"" + asTyped(paths.front()) +
                                "\": another program writes the list at the same time. Try again.");
        }
    }
}

} // namespace

void IgnoreOptions::addTo(Subcommand& command) {
    command.arguments("NAME", paths, "Names or patterns, with their directory: build/*.o")
        .required();
}

int runIgnoreEdit(Session& session, RequestType type, const IgnoreDone& done,
                  const IgnoreOptions& options) {
    const auto source = findSource(session, options.paths.front());
    if (!source) {
        return source.status();
    }
    std::vector<String> paths;
    std::transform(options.paths.begin(), options.paths.end(), std::back_inserter(paths),
                   pathWithDirectory);
    const auto isUsable = check(session, type, paths);
    if (!isUsable) {
        return isUsable.status();
    }
    const Change change{nullptr, options.paths.front(), false, Follow::nothing};
    return finishChange(session, perform(session, type, *source, paths), change,
                        [&](const Value& /*result*/, const ChangeOutput& /*output*/) {
                            return done(paths.size());
                        });
}

} // namespace quen::tools
