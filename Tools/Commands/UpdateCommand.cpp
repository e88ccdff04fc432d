#include "Host/Places/Locations.h"
#include "Host/Plans/Plans.h"
#include "Tools/Commands/Changes/Losses.h"
#include "Tools/Commands/Changes/Transfer.h"
#include "Tools/Commands/Changes/TransferPreview.h"
#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/Places/EarlierRevisions.h"
#include "Tools/Commands/Places/MissingPaths.h"
#include "Tools/Commands/Session/HostQueries.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <system_error>

namespace quen::tools {

namespace {

struct Options {
    CommonOptions common;
    RevisionRange revision;
    bool isPreview = false;
    bool dropsTheirs = false;
    std::vector<std::string> paths{"."};
};

std::string updateSummary(const ChangeFacts& facts) {
    return itemCountOf(facts) == 0 ? "Already up to date at" + revisionIn(facts) + "."
                                   : "Updated to" + revisionIn(facts) + itemsIn(facts) + ".";
}

/// The client calls a directory modified where only something in it is.
bool isIncomingItself(const StatusEntry& entry) {
    std::error_code ignored;
    return entry.incomingItem.view() != "modified" || entry.incomingProperties.view() != "none" ||
           !std::filesystem::is_directory(entry.path.str(), ignored);
}

int previewUpdate(const Session& session, const Options& options) {
    const UpdatePlan plan =
        planUpdate(absolutePaths(options.paths), options.revision.start, runHostQuery);
    if (plan.error) {
        return Losses::explain(session, plan.error).status;
    }
    const std::string revision = plan.revision ? std::to_string(*plan.revision) : "HEAD";
    const auto incoming =
        std::count_if(plan.incoming.begin(), plan.incoming.end(), isIncomingItself);
    return tellPreview(session, {"Would update to revision " + revision,
                                 static_cast<std::size_t>(incoming),
                                 previewItems(plan.changedOnBothSides),
                                 previewItems(plan.inTheWay),
                                 {}});
}

int runUpdateCommand(Session& session, const Options& options) {
    if (options.isPreview || options.common.dryRun) {
        const int status = previewUpdate(session, options);
        if (options.isPreview || status == ExitFailure) {
            return status;
        }
    }
    const auto source = findSource(session, options.paths.front());
    if (!source) {
        return source.status();
    }
    const auto revision =
        resolveRevisions(session, *source, options.paths.front(), options.revision);
    if (!revision) {
        return revision.status();
    }
    const auto request = makeRequest(RequestTypeUpdate, *source, clientPaths(options.paths));
    request->setStartingRevision(startingRevisionFor(revision->start));
    Transfer transfer{{request, options.paths.front()}, updateSummary, {}, "quen cat"};
    if (!options.dropsTheirs) {
        transfer.keepTheirs = [](const ChangeFacts& facts) {
            return keepTheirsOfUpdate(facts, workingDirectory());
        };
    }
    // The update may still bring what is not there; of anything else the client says nothing.
    const auto missing = missingAmong(options.paths);
    return tellOfMissing(session, missing, makeTransfer(session, transfer));
}

} // namespace

void addUpdateCommand(CommandLine& line) {
    const auto options = std::make_shared<Options>();
    Subcommand command =
        line.add("update", "Update a working copy; conflicting lines keep your version");
    addRevisionOption(command, options->revision, false, "Revision to update to (default: HEAD)");
    addPreviewOption(command, options->isPreview);
    addTheirsOption(command, options->dropsTheirs);
    command.arguments("PATH", options->paths, "Files or directories (default: .)");
    runInSession<Options>(command, options, runUpdateCommand);
}

} // namespace quen::tools
