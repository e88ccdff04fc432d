#include "Foundation/ShellWord.h"
#include "Host/Places/Locations.h"
#include "Host/Plans/Plans.h"
#include "Tools/Commands/Changes/LocalEdit.h"
#include "Tools/Commands/Changes/Losses.h"
#include "Tools/Commands/Changes/Transfer.h"
#include "Tools/Commands/Changes/TransferPreview.h"
#include "Tools/Commands/CommandLine/CommandLine.h"
#include "Tools/Commands/Places/BranchLocation.h"
#include "Tools/Commands/Places/EarlierRevisions.h"
#include "Tools/Commands/Session/HostQueries.h"
#include "Tools/Commands/Session/Records.h"

#include <iterator>
#include <memory>
#include <utility>

namespace quen::tools {

namespace {

struct Options {
    CommonOptions common;
    LayoutOptions layout;
    RevisionRange revisions;
    RevisionChanges changes;
    bool isSure = false;
    bool isPreview = false;
    bool dropsTheirs = false;
    std::string branch;
    std::string path = ".";
};

/// A branch as the client takes it beside a revision, without the `@` that closes a name.
std::string opened(const String& location) {
    return location.hasSuffix("@") ? location.str().substr(0, location.length() - 1)
                                   : location.str();
}

/// One after another. Changes that follow each other are one range.
std::vector<RevisionRange> rangesOf(const Options& options) {
    std::vector<RevisionRange> ranges;
    std::int64_t end = 0;
    for (const std::int64_t number : options.changes.numbers) {
        if (number > 0 && !ranges.empty() && number == end + 1) {
            ranges.back().end = std::to_string(number);
        } else if (number > 0) {
            ranges.push_back({std::to_string(number - 1), std::to_string(number)});
        } else {
            ranges.push_back({std::to_string(-number), std::to_string(-number - 1)});
        }
        end = number;
    }
    return ranges.empty() ? std::vector{options.revisions} : ranges;
}

/// As the client's `-r` takes it; empty for all that is missing.
String rangeOf(const RevisionRange& revisions) {
    return revisions.isRange() ? String(revisions.start + ":" + revisions.end) : String();
}

std::vector<TransferPreview::Item> conflictItems(const ChangeFacts& facts) {
    std::vector<TransferPreview::Item> items;
    for (const ConflictFacts& conflict : facts.conflicts) {
        const bool isTree = conflict.tree != ConflictState::none;
        items.push_back({isTree                                 ? "tree conflict"
                         : conflict.text == ConflictState::none ? "properties"
                                                                : "text",
                         absolutePaths({conflict.path.str()}).front()});
    }
    return items;
}

int previewMerge(const Session& session, const Options& options, const String& branch,
                 const RevisionRange& range) {
    const MergePlan plan =
        planMerge(branch, absolutePaths({options.path}).front(), rangeOf(range), runHostQuery);
    if (plan.error) {
        return Losses::explain(session, plan.error).status;
    }
    return tellPreview(session, {"Would merge from " + printable(options.branch),
                                 itemCountOf(plan.facts),
                                 conflictItems(plan.facts),
                                 {},
                                 previewItems(plan.localChanges)});
}

/// What is changed and not committed would be mixed with what is merged.
Outcome<Losses> mixedWith(const Session& session, const Options& options) {
    const RevertPlan plan = planRevert(absolutePaths({options.path}), runHostQuery);
    if (plan.error) {
        return Losses::explain(session, plan.error);
    }
    Confirmation confirmation(
        "These changes are not committed, and would be mixed with what is merged:",
        "Merge into a working copy with " + counted(plan.touched.size(), "local change") + "?");
    for (const StatusEntry& entry : plan.touched) {
        confirmation.add(wordsForItem(entry), shownPath(entry.path.view()));
    }
    return Losses("merge", std::move(confirmation), plan.lost);
}

/// How to take it back, as long as it is not committed.
std::string wayBack(const Options& options, const Losses& before) {
    const std::string revert = "quen revert " + shellWord(options.path);
    return before.isKept()
               ? "To undo the merge before you commit it: `" + revert +
                     "`, which also reverts your own changes, then `" + before.undoCommand() +
                     " --step 2`, which brings those back as they were."
               : "To undo the merge before you commit it: `" + revert + "`.";
}

std::string mergeSummary(const ChangeFacts& facts, const Options& options, const Losses& before) {
    const std::string branch = printable(options.branch);
    return itemCountOf(facts) == 0 ? "Nothing to merge from " + branch + "."
                                   : "Merged " + counted(itemCountOf(facts), "item") + " from " +
                                         branch + ".\n" + wayBack(options, before);
}

QuenSourceControlRequestPtr requestFor(const Options& options, const SourceTree& source,
                                       const String& branch, const RevisionRange& range) {
    auto request = makeRequest(RequestTypeMerge, source, {clientPath(options.path)});
    request->setDestination(branch);
    request->setStartingRevision(startingRevisionFor(range.start));
    request->setEndingRevision(range.isRange() ? String(range.end) : String());
    return request;
}

int mergeRanges(Session& session, const Options& options, const SourceTree& source,
                const String& branch, const Losses& before) {
    std::vector<QuenSourceControlRequestPtr> requests;
    for (const RevisionRange& range : rangesOf(options)) {
        requests.push_back(requestFor(options, source, branch, range));
    }
    Transfer transfer{{requests.front(), options.path}, [&](const ChangeFacts& facts) {
                          return mergeSummary(facts, options, before);
                      }};
    transfer.further = {std::next(requests.begin()), requests.end()};
    if (!options.dropsTheirs) {
        transfer.keepTheirs = [&](const ChangeFacts& facts) {
            return keepTheirsOfMerge(facts, workingDirectory(), opened(branch));
        };
    }
    return makeTransfer(session, transfer);
}

int merge(Session& session, const Options& options, const SourceTree& source,
          const String& branch) {
    auto before = mixedWith(session, options);
    if (!before) {
        return before.status();
    }
    int status = before->confirm(session, options.isSure);
    if (status == ExitSuccess) {
        status = before->keep(session, {options.path}, options.isSure);
    }
    if (status != ExitSuccess) {
        return status;
    }
    return before->conclude(session, mergeRanges(session, options, source, branch, *before));
}

int previewAll(const Session& session, const Options& options, const String& branch) {
    int status = ExitSuccess;
    for (const RevisionRange& range : rangesOf(options)) {
        const int each = previewMerge(session, options, branch, range);
        status = status == ExitSuccess ? each : status;
    }
    return status;
}

int runMergeCommand(Session& session, const Options& asked) {
    const RevisionRange& revisions = asked.revisions;
    if (revisions.isGiven() && !revisions.isRange()) {
        session.tell("A merge takes two revisions, -r START:END: the changes after START are "
                     "merged, up to END.");
        return ExitUsage;
    }
    const auto source = findSource(session, asked.path);
    if (!source) {
        return source.status();
    }
    const auto branch = branchLocation(session, asked.layout, asked.path, asked.branch);
    if (!branch) {
        return branch.status();
    }
    // Revisions before others are those of the branch that is merged.
    const auto resolved = revisions.isGiven()
                              ? resolveRevisions(session, *source, opened(*branch), revisions)
                              : Outcome(revisions);
    if (!resolved) {
        return resolved.status();
    }
    Options options = asked;
    options.revisions = *resolved;
    if (options.isPreview || options.common.dryRun) {
        const int status = previewAll(session, options, *branch);
        if (options.isPreview || status == ExitFailure) {
            return status;
        }
    }
    return merge(session, options, *source, *branch);
}

} // namespace

void addMergeCommand(CommandLine& line) {
    const auto options = std::make_shared<Options>();
    Subcommand command = line.add("merge", "Merge changes from another branch into a working copy");
    const Parameter revisions =
        addRevisionOption(command, options->revisions, true,
                          "Merge only the changes made after START, up to END (START:END)");
    addChangeOption(command, options->changes,
                    "Merge only what revision N changed; -N takes it back; also N,M")
        .excludes(revisions);
    command.argument("BRANCH", options->branch, "Branch name, trunk, URL or ^/PATH").required();
    command.argument("PATH", options->path, "Working copy to merge into (default: .)");
    addPreviewOption(command, options->isPreview);
    addTheirsOption(command, options->dropsTheirs);
    addYesOption(command, options->isSure);
    options->layout.addTo(command);
    runInSession<Options>(command, options, runMergeCommand);
}

} // namespace quen::tools
