#include "Host/Places/Locations.h"
#include "Host/Plans/Plans.h"
#include "QuenFoundation/QuenSourceControlConstants.h"
#include "Tools/Commands/Changes/LocalEdit.h"
#include "Tools/Commands/Changes/Losses.h"
#include "Tools/Commands/Changes/Transfer.h"
#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/Places/EarlierRevisions.h"
#include "Tools/Commands/Session/HostQueries.h"
#include "Tools/Commands/Session/Records.h"

#include <memory>

namespace quen::tools {

namespace {

struct Options {
    CommonOptions common;
    RevisionRange revision;
    bool isSure = false;
    std::string url;
    std::string directory;
};

/// In a directory that is a working copy already a checkout is an update.
Confirmation concernsOfUpdate(const Options& options, const String& directory) {
    Confirmation confirmation("There is a working copy already, and both sides have changed:",
                              "Check out all the same?");
    // Where the plan fails the checkout does, and tells why.
    const UpdatePlan plan = planUpdate({directory}, options.revision.start, runHostQuery);
    for (const auto* const list : {&plan.changedOnBothSides, &plan.inTheWay}) {
        for (const StatusEntry& entry : *list) {
            confirmation.add(wordsForItem(entry), shownPath(entry.path.view()));
        }
    }
    return confirmation;
}

/// What lies where the checkout would put something.
Confirmation concerns(const Options& options, const std::string& directory) {
    const String place = absolutePaths({directory}).front();
    const CheckoutPlan plan = planCheckout(closedClientPath(options.url), place, runHostQuery);
    if (plan.isWorkingCopy) {
        return concernsOfUpdate(options, place);
    }
    Confirmation confirmation("These exist where the checkout would put something; they would stay "
                              "as they are, in conflict with it:",
                              "Check out all the same?");
    for (const String& path : plan.inTheWay) {
        confirmation.add("in the way", shownPath(path.view()));
    }
    return confirmation;
}

int runCheckoutCommand(Session& session, const Options& options) {
    const auto source = findSource(session, options.url);
    if (!source) {
        return source.status();
    }
    const auto revision = resolveRevisions(session, *source, options.url, options.revision);
    if (!revision) {
        return revision.status();
    }
    const std::string directory =
        options.directory.empty() ? directoryNameFor(options.url) : options.directory;
    const int confirmed = concerns(options, directory).obtain(session, options.isSure);
    if (confirmed != ExitSuccess) {
        return confirmed;
    }
    const auto request = makeRequest(RequestTypeCheckout, *source, {clientPath(options.url)});
    request->setDestination(closedDirectory(directory));
    // The client's own default. Said, so that a URL that leads nowhere is told with its revision.
    request->setStartingRevision(
        startingRevisionFor(revision->isGiven() ? revision->start : "HEAD"));
    return makeTransfer(session, {{request, directory, true}, [&](const ChangeFacts& facts) {
                                      return "Checked out" + revisionIn(facts) + " to " +
                                             printable(directory) + itemsIn(facts) + ".";
                                  }});
}

} // namespace

void addCheckoutCommand(CommandLine& line) {
    const auto options = std::make_shared<Options>();
    Subcommand command = line.add("checkout", "Create a working copy of a URL");
    addRevisionOption(command, options->revision, false, "Revision to check out (default: HEAD)");
    command.argument("URL", options->url, "URL to check out").required();
    command.argument("DIRECTORY", options->directory,
                     "Directory to create (default: the last part of the URL)");
    addYesOption(command, options->isSure);
    runInSession<Options>(command, options, runCheckoutCommand);
}

} // namespace quen::tools
