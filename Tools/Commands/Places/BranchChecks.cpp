#include "Tools/Commands/Places/BranchChecks.h"

#include "Foundation/ShellWord.h"
#include "Host/Places/BranchNames.h"
#include "Host/Places/Locations.h"
#include "Host/Plans/BranchPlans.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Commands/Changes/Summaries.h"
#include "Tools/Commands/CommandLine/Suggestion.h"
#include "Tools/Commands/Session/HostQueries.h"
#include "Tools/Terminal/InterruptWatch.h"
#include "Tools/Terminal/Question.h"
#include "Tools/Terminal/SafeText.h"

#include <iostream>
#include <utility>

namespace quen::tools {

namespace {

std::string branchesURL(const SourceTree& source) {
    return source.repository->branchesLocation().absoluteString().str();
}

String urlOf(const SourceTree& source, const std::string& name) {
    return branchesURL(source) + "/" + encodedName(name);
}

/// The exit status where the repository could not be asked, which is told then.
int finishLooking(const Session& session, const Error& error) {
    if (InterruptWatch::wasInterrupted()) {
        return session.fail("Interrupted.", ExitInterrupted).status;
    }
    if (error) {
        session.tell(error);
        return ExitFailure;
    }
    return ExitSuccess;
}

/// Explained where the repository cannot be asked.
Outcome<RepositoryPlace> look(const Session& session, const String& url) {
    RepositoryPlace place = lookAt(url, runHostQuery);
    const int status = finishLooking(session, place.error);
    return status == ExitSuccess ? Outcome(std::move(place)) : Explained{status};
}

int tellOfMissingParent(const Session& session, const std::string& name, const std::string& url) {
    return session
        .fail("\"" + name + "\" cannot be created: \"" + url +
              "\" does not exist. Make it first with: quen mkdir " + shellWord(url))
        .status;
}

Outcome<std::vector<std::string>> branchNames(Session& session, const SourceTree& source) {
    const auto operation = session.query(makeRequest(RequestTypeListBranches, source));
    if (!operation) {
        return operation.explained();
    }
    std::vector<std::string> names;
    const Array* const records = (*operation)->result().array();
    for (const Value& record : records == nullptr ? Array() : *records) {
        names.push_back(
            (*record.dictionary())[QuenSourceControlOperationNameKey].stringValue().str());
    }
    return names;
}

int tellOfMissingBranch(Session& session, const SourceTree& source, const std::string& name) {
    const auto names = branchNames(session, source);
    if (!names) {
        return names.status();
    }
    const std::string meant = nearestName(name, *names);
    return session
        .fail("There is no branch \"" + name + "\"." +
              (meant.empty() ? " `quen branches` lists them." : " Did you mean \"" + meant + "\"?"))
        .status;
}

std::string lastChangeOf(const RepositoryPlace& place) {
    std::string text = place.commit.revision ? "r" + std::to_string(*place.commit.revision) : "";
    if (!place.commit.author.isEmpty()) {
        text.append(" by ").append(printable(place.commit.author.view()));
    }
    return text;
}

int askToDelete(const Session& session, const std::string& name, const RepositoryPlace& place) {
    if (session.options().dryRun) {
        session.tell("Branch \"" + name + "\", last changed in " + lastChangeOf(place) +
                     ", would be deleted.");
        return ExitSuccess;
    }
    if (!canAsk()) {
        return session
            .fail("Deleting branch \"" + name + "\" (last changed in " + lastChangeOf(place) +
                  ") was not confirmed, so nothing was done. --yes confirms it.")
            .status;
    }
    std::cerr << "Branch \"" << printable(name) << "\", last changed in " << lastChangeOf(place)
              << ", stays in the history.\n";
    const bool mayGo = ask("Delete branch \"" + printable(name) + "\"?");
    if (InterruptWatch::wasInterrupted()) {
        return session.fail("Interrupted.", ExitInterrupted).status;
    }
    return mayGo ? ExitSuccess : ExitFailure;
}

} // namespace

int checkNewBranch(Session& session, const SourceTree& source, const std::string& name,
                   const std::string& noun) {
    if (const std::string problem = problemOfNewBranchName(name); !problem.empty()) {
        return session.fail("A " + noun + " \"" + name + "\" " + problem).status;
    }
    const std::size_t slash = name.rfind('/');
    const std::string parent = slash == std::string::npos
                                   ? branchesURL(source)
                                   : urlOf(source, name.substr(0, slash)).str();
    const NewBranchPlaces places = lookForNewBranch(urlOf(source, name), parent, runHostQuery);
    if (const int status = finishLooking(session, places.branch.error); status != ExitSuccess) {
        return status;
    }
    if (places.branch.exists) {
        return session
            .fail(capitalised(noun) + " \"" + name + "\" already exists (last changed in " +
                  lastChangeOf(places.branch) + "). Choose another name.")
            .status;
    }
    return places.parent.exists ? ExitSuccess : tellOfMissingParent(session, name, parent);
}

int checkBranchDeletion(Session& session, const SourceTree& source, const std::string& name,
                        const BranchDeletion& deletion) {
    const String url = urlOf(source, name);
    const auto place = look(session, url);
    if (!place) {
        return place.status();
    }
    if (!place->exists) {
        return tellOfMissingBranch(session, source, name);
    }
    if (!deletion.isForced && !isRepositoryURL(deletion.path) &&
        isOnBranch(clientPath(deletion.path), url, runHostQuery)) {
        return session
            .fail("The working copy is on branch \"" + name +
                  "\". Leave it first, with quen switch trunk, or delete it with --force.")
            .status;
    }
    return deletion.isSure ? ExitSuccess : askToDelete(session, name, *place);
}

} // namespace quen::tools
