#include "Tools/Commands/BranchEditCommands.h"

#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Commands/Changes/Change.h"
#include "Tools/Commands/Changes/LogMessage.h"
#include "Tools/Commands/Places/BranchLocation.h"

#include <CLI/CLI.hpp>
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
};

/// What the siblings differ in.
struct Edit {
    std::string name;
    RequestType type;
    /// What an editor says that the message is about.
    std::string about;
};

/// The repository with its branches: the only kind of tree that these requests take.
std::optional<SourceTree> findRepository(Session& session, const Options& options) {
    if (!isBranchName(options.name)) {
        session.tell("\"" + printable(options.name) +
                     "\" cannot be the name of a branch: it has parts that are empty, . or ..");
        return std::nullopt;
    }
    auto source =
        SourceTreeFinder(session, options.common).findWithLayout(options.path, options.layout);
    if (source) {
        source->tree = source->repository;
    }
    return source;
}

/// The options of the request but for the message; nullopt where what to copy is not to be found
/// out.
std::optional<Dictionary> sourceOptions(Session& session, const Options& options) {
    if (options.from.empty()) {
        return Dictionary::empty();
    }
    const auto location =
        branchLocation(session, options.common, options.layout, options.path, options.from);
    return location ? std::optional(
                          Dictionary{{QuenSourceControlRequestOptionSourceLocation, *location}})
                    : std::nullopt;
}

int runEdit(const Edit& edit, const Options& options) {
    const auto session = Session::open(options.common, "branch " + edit.name);
    if (session == nullptr) {
        return ExitFailure;
    }
    const auto source = findRepository(*session, options);
    if (!source) {
        return session->failureStatus();
    }
    auto requestOptions = sourceOptions(*session, options);
    LogMessage message(*session);
    if (!requestOptions ||
        !message.obtain(options.message, {edit.about + " " + printable(options.name)})) {
        return session->failureStatus();
    }
    requestOptions->set(QuenSourceControlRequestOptionMessage, message.text());
    const auto request = makeRequest(edit.type, *source, {}, *requestOptions);
    request->setDestination(branchNameInURL(options.name));
    return message.conclude(makeChange(*session, {request, ""}, options.common, committedSummary));
}

CLI::App* addEdit(CommandLine& line, CLI::App& branch, const Edit& edit, const std::string& help,
                  const std::shared_ptr<Options>& options) {
    CLI::App* const command = branch.add_subcommand(edit.name, help);
    command->add_option("NAME", options->name, "The branch")->required();
    command->add_option("PATH", options->path, "A path or URL in the project (default: here)");
    options->message.addTo(*command);
    options->layout.addTo(*command);
    options->common.addTo(*command);
    command->callback([&line, edit, options] {
        options->name = branchNameSaid(options->name);
        line.run = [edit, options] { return runEdit(edit, *options); };
    });
    return command;
}

} // namespace

void addBranchEditCommands(CommandLine& line, CLI::App& branch) {
    const auto creation = std::make_shared<Options>();
    CLI::App* const create = addEdit(line, branch, {"create", RequestTypeRemoteCopy, "New branch"},
                                     "Make a branch in the repository", creation);
    create->add_option("--from", creation->from,
                       "What to branch off: a branch, a URL or ^/NAME (default: the trunk)");

    addEdit(line, branch, {"delete", RequestTypeRemoteRemove, "Deletion of branch"},
            "Delete a branch in the repository", std::make_shared<Options>());
}

} // namespace quen::tools
