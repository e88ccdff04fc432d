#include "Tools/Commands/BranchEditCommands.h"

#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Commands/Changes/Change.h"
#include "Tools/Commands/Changes/LogMessage.h"
#include "Tools/Commands/Places/BranchChecks.h"
#include "Tools/Commands/Places/BranchLocation.h"
#include "Tools/Commands/Places/ItemPlace.h"

#include <memory>

namespace quen::tools {

namespace {

struct Options {
    CommonOptions common;
    LayoutOptions layout;
    MessageOptions message;
    std::string name;
    std::string path = ".";
    /// What is copied; empty for the trunk.
    std::string from;
    BranchDeletion deletion;
};

/// What the siblings differ in.
struct Edit {
    RequestType type;
    /// What an editor says that the message is about.
    std::string about;
    /// A tag is a branch that lies among the tags.
    bool isTag = false;

    std::string noun() const { return isTag ? "tag" : "branch"; }
};

/// The repository with its branches: the only kind of tree that these requests take.
Outcome<SourceTree> findRepository(Session& session, const Edit& edit, const Options& options) {
    if (!isBranchName(options.name)) {
        return session.fail("\"" + printable(options.name) + "\" cannot be the name of a " +
                            edit.noun() + ": its parts must not be empty, . or ..");
    }
    auto source = findSourceWithLayout(session, options.path, options.layout);
    if (source && edit.isTag) {
        LayoutOptions layout;
        layout.layout = {source->repository->trunkLocation().absoluteString().str(),
                         tagsBeside(source->repository->branchesLocation().absoluteString().str())};
        source = findSourceWithLayout(session, options.path, layout);
    }
    if (source) {
        source->tree = source->repository;
    }
    return source;
}

/// The options of the request but for the message; explained where what to copy cannot be found
/// out.
Outcome<Dictionary> sourceOptions(Session& session, const Options& options) {
    if (options.from.empty()) {
        return Dictionary::empty();
    }
    const auto location = branchLocation(session, options.layout, options.path, options.from);
    if (!location) {
        return location.explained();
    }
    return Dictionary{{QuenSourceControlRequestOptionSourceLocation, *location}};
}

int check(Session& session, const SourceTree& source, const Edit& edit, const Options& options) {
    if (edit.type == RequestTypeRemoteCopy) {
        return checkNewBranch(session, source, options.name, edit.noun());
    }
    BranchDeletion deletion = options.deletion;
    deletion.path = options.path;
    return checkBranchDeletion(session, source, options.name, deletion);
}

int runEdit(Session& session, const Edit& edit, const Options& options) {
    const auto source = findRepository(session, edit, options);
    if (!source) {
        return source.status();
    }
    if (const int status = check(session, *source, edit, options); status != ExitSuccess) {
        return status;
    }
    auto requestOptions = sourceOptions(session, options);
    if (!requestOptions) {
        return requestOptions.status();
    }
    LogMessage message(session);
    if (!message.obtain(options.message, {edit.about + " " + printable(options.name)})) {
        return ExitFailure;
    }
    requestOptions->set(QuenSourceControlRequestOptionMessage, message.text());
    const auto request = makeRequest(edit.type, *source, {}, *requestOptions);
    request->setDestination(branchNameInURL(options.name));
    return message.conclude(makeChange(session, {request, ""}, committedSummary));
}

Subcommand addEdit(Subcommand command, const Edit& edit, const std::shared_ptr<Options>& options) {
    command.argument("NAME", options->name, "Name of the " + edit.noun()).required();
    command.argument("PATH", options->path, "Path or URL in the project (default: .)");
    options->message.addTo(command);
    options->layout.addTo(command);
    runInSession<Options>(command, options, [edit](Session& session, const Options& given) {
        Options said = given;
        said.name = branchNameSaid(given.name);
        return runEdit(session, edit, said);
    });
    return command;
}

} // namespace

void addBranchEditCommands(Subcommand& branch) {
    const auto creation = std::make_shared<Options>();
    Subcommand create = addEdit(branch.subcommand("create", "Create a branch in the repository"),
                                {RequestTypeRemoteCopy, "New branch"}, creation);
    create.option("--from", creation->from,
                  "Branch, URL or ^/PATH to branch from (default: trunk)");

    const auto deletion = std::make_shared<Options>();
    Subcommand remove = addEdit(branch.subcommand("delete", "Delete a branch in the repository"),
                                {RequestTypeRemoteRemove, "Deletion of branch"}, deletion);
    remove.flag("-y,--yes", deletion->deletion.isSure, "Do not ask");
    remove.flag("--force", deletion->deletion.isForced,
                "Also delete the branch that the working copy is on");
}

void addTagEdit(Subcommand tag) {
    const auto options = std::make_shared<Options>();
    Subcommand command = addEdit(tag, {RequestTypeRemoteCopy, "New tag", true}, options);
    command.option("--from", options->from, "Branch, URL or ^/PATH to tag (default: trunk)");
}

} // namespace quen::tools
