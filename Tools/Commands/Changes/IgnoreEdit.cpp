#include "Tools/Commands/Changes/IgnoreEdit.h"

#include "Foundation/PathComponents.h"
#include "Host/IgnoreEdits.h"
#include "Host/Places/Locations.h"
#include "Host/RunContext.h"
#include "Tools/Commands/Changes/Change.h"
#include "Tools/Commands/Places/SourceTreeFinder.h"

#include <algorithm>
#include <iterator>
#include <memory>

namespace quen::tools {

namespace {

/// The plug-in takes the directory from the path, so that a bare name must say where it lies.
std::string pathWithDirectory(const std::string& path) {
    return path.find('/') == std::string::npos ? "./" + path : path;
}

bool tellOfUnusableNames(const Session& session, RequestType type, const IgnoreOptions& options) {
    bool isAnyUnusable = false;
    for (const std::string& path : options.paths) {
        const std::string problem = problemOfIgnoredName(path, type);
        if (!problem.empty()) {
            session.tell("\"" + printable(path) + "\" " + printable(problem));
            isAnyUnusable = true;
        }
    }
    return isAnyUnusable;
}

} // namespace

void IgnoreOptions::addTo(Subcommand& command) {
    command.arguments("NAME", paths, "Names or patterns, with their directory: build/*.o")
        .required();
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
    const auto edits = std::make_shared<IgnoreEditRunner>(RunContext::current().toolRunner());
    const RunContext::Scope scope(RunContext::current().withToolRunner(edits));
    StringArray names;
    std::transform(options.paths.begin(), options.paths.end(), std::back_inserter(names),
                   pathWithDirectory);
    const Change change{makeRequest(type, *source, names), options.paths.front(), false,
                        Follow::nothing};
    const auto operation = session.perform(change.request, change.follow);
    if (operation && !(*operation)->error()) {
        (*operation)->setError(edits->error());
    }
    return finishChange(session, operation, change,
                        [&](const Value& /*result*/, const ClientReport& /*report*/) {
                            return done + " " + counted(names.size(), "name") + ".";
                        });
}

} // namespace quen::tools
