#include "Host/Facts/ChangeFacts.h"
#include "Host/Plans/Plans.h"
#include "Tools/Commands/Changes/Change.h"
#include "Tools/Commands/Changes/LocalEdit.h"
#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/Session/HostQueries.h"

#include <memory>
#include <utility>

namespace quen::tools {

namespace {

struct Options {
    LocalEditOptions edit;
    std::string accept = "working";
};

/// What the files in conflict hold now, which goes where another version is taken.
Outcome<Losses> replacedContent(const Session& session, const std::vector<std::string>& paths) {
    RevertPlan plan = planRevert(absolutePaths(paths), runHostQuery);
    if (plan.error) {
        return Losses::explain(session, plan.error);
    }
    std::erase_if(plan.lost, [](const LostItem& item) { return !isConflicted(item.status); });
    return Losses("resolve", {{}, {}}, std::move(plan.lost));
}

/// The client's own command, since the provider's takes the files as they are.
QuenSourceControlOperationPtr runResolve(Session& session, const Options& options,
                                         ChangeFacts& facts) {
    ChangeFactsReader reader(ChangeColumns::schedule);
    const RunContext::Scope scope(RunContext::current().withOutputWatcher(
        [&reader](const QuenSourceControlOperation& /*operation*/, std::string_view piece) {
            reader.take(piece);
        }));
    std::vector<std::string> paths;
    for (const String& path : absolutePaths(options.edit.paths)) {
        paths.push_back(path.str());
    }
    const std::string version = options.accept == "base" ? "base" : options.accept + "-full";
    auto command =
        session.performCommand({"resolve", "--accept", version}, paths, RequestTypeResolve);
    facts = reader.takeFacts();
    return command;
}

int acceptVersion(Session& session, const Options& options) {
    auto replaced = replacedContent(session, options.edit.paths);
    if (!replaced) {
        return replaced.status();
    }
    if (const int status = replaced->keep(session, options.edit.paths, options.edit.isSure);
        status != ExitSuccess) {
        return status;
    }
    ChangeFacts facts;
    const QuenSourceControlOperationPtr operation = runResolve(session, options, facts);
    const auto summary = [&](const Value& /*result*/, const ChangeOutput& /*output*/) {
        return facts.conflicts.empty() ? "Nothing to resolve."
                                       : "Resolved " + counted(facts.conflicts.size(), "conflict") +
                                             "." + replaced->advice();
    };
    return replaced->conclude(
        session, finishChange(session, operation, {nullptr, options.edit.paths.front()}, summary));
}

int runResolveCommand(Session& session, const Options& options) {
    return options.accept == "working"
               ? runLocalEdit(session, {RequestTypeResolve, "Resolved", "resolve", "conflict"},
                              options.edit)
               : acceptVersion(session, options);
}

} // namespace

void addResolveCommand(CommandLine& line) {
    const auto options = std::make_shared<Options>();
    Subcommand command =
        line.add("resolve", "Mark conflicts as resolved, keeping the files as they are");
    // The session is opened with the options that the edit holds.
    const std::shared_ptr<LocalEditOptions> edit(options, &options->edit);
    edit->addTo(command);
    command
        .option("--accept", options->accept,
                "The version to take: working (as it is now), mine, theirs or base")
        .oneOf({"working", "mine", "theirs", "base"});
    addYesOption(command, edit->isSure);
    runInSession<LocalEditOptions>(command, edit,
                                   [options](Session& session, const LocalEditOptions& /*edit*/) {
                                       return runResolveCommand(session, *options);
                                   });
}

} // namespace quen::tools
