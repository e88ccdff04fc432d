#include "Tools/Commands/Changes/Transfer.h"

#include "Host/Keeping/ConflictOutcome.h"
#include "Tools/Commands/Changes/ChangeRecords.h"
#include "Tools/Commands/Changes/TransferNews.h"

#include <filesystem>
#include <iostream>
#include <set>
#include <string>
#include <system_error>

namespace quen::tools {

namespace {

/// What all runs of a transfer did together.
struct Result {
    ChangeFacts facts;
    /// How many items the client named.
    std::size_t items = 0;
    /// How many runs before the last one did all that they were to do.
    std::size_t made = 0;
};

template <typename Item> void append(std::vector<Item>& all, const std::vector<Item>& more) {
    all.insert(all.end(), more.begin(), more.end());
}

/// The same, where `count` externals were told of before.
template <typename Item> std::vector<Item> behind(std::size_t count, std::vector<Item> items) {
    for (Item& item : items) {
        if (item.external) {
            *item.external += count;
        }
    }
    return items;
}

/// What is left out is of no use behind a run: unknown lines and counts.
void append(ChangeFacts& all, const ChangeFacts& more) {
    const std::size_t externals = all.externals.size();
    append(all.items, behind(externals, more.items));
    append(all.conflicts, behind(externals, more.conflicts));
    append(all.skipped, behind(externals, more.skipped));
    append(all.targets, more.targets);
    append(all.externals, more.externals);
    append(all.removedExternals, more.removedExternals);
    append(all.merges, more.merges);
    all.revision = more.revision ? more.revision : all.revision;
}

/// Performs a request with a reader of its own at the client's output.
Outcome<QuenSourceControlOperationPtr> perform(Session& session,
                                               const QuenSourceControlRequestPtr& request,
                                               Follow follow, Result& result) {
    ChangeFactsReader reader;
    const RunContext::Scope scope(RunContext::current().withOutputWatcher(
        [&reader](const QuenSourceControlOperation& /*operation*/, std::string_view piece) {
            reader.take(piece);
        }));
    auto operation = session.perform(request, follow);
    append(result.facts, reader.takeFacts());
    result.items += session.output().items();
    return operation;
}

/// Whether the operation did all that it was to do. In a dry run it is not asked: it would miss
/// only what is not there for want of a run.
bool isMade(const Session& session, const QuenSourceControlOperation& operation) {
    return session.options().dryRun || (!operation.error() && !session.wasStopped(operation));
}

/// Performs all of them; the last one that was performed.
Outcome<QuenSourceControlOperationPtr> performAll(Session& session, const Transfer& transfer,
                                                  Result& result) {
    const Change& change = transfer.change;
    auto operation = perform(session, change.request, change.follow, result);
    for (const QuenSourceControlRequestPtr& request : transfer.further) {
        const bool isToBeSeen = result.facts.holdsSettled() || result.facts.holdsLeft();
        if (!operation || isToBeSeen || !isMade(session, **operation)) {
            break;
        }
        ++result.made;
        operation = perform(session, request, change.follow, result);
    }
    return operation;
}

std::vector<ConflictOutcome> outcomesOf(const Transfer& transfer, const ChangeFacts& facts) {
    const bool keeps = transfer.keepTheirs && facts.holdsSettled();
    auto outcomes = conflictOutcomes(
        facts, keeps ? transfer.keepTheirs(facts) : std::vector<KeptTheirs>(), workingDirectory());
    explainLeft(outcomes);
    return outcomes;
}

/// Where conflicts are left the client fails at the very end: all else was done. A script is also
/// told of what was done until it failed on the way.
int finish(const Session& session, const QuenSourceControlOperation& performed,
           const Transfer& transfer, const Result& result,
           const std::vector<ConflictOutcome>& outcomes) {
    const bool isDone = saysOnlyConflictsLeft(performed.error());
    const bool isToBeTold = isDone || result.made > 0 || isMade(session, performed);
    const std::string summary = isToBeTold ? transfer.summary(result.facts) : "";
    if (session.options().json) {
        Dictionary record = changeRecord(performed.result(), summary, session.output());
        record.set("items", static_cast<std::int64_t>(result.items));
        addTransfer(record, result.facts, outcomes);
        printJson(record);
    } else if (isToBeTold) {
        std::cout << summary << '\n';
    }
    return isDone ? ExitSuccess : concludeChange(session, performed, transfer.change);
}

} // namespace

int makeTransfer(Session& session, const Transfer& transfer) {
    Result result;
    const ChangeFacts& facts = result.facts;
    const auto operation = performAll(session, transfer, result);
    if (!operation) {
        return operation.status();
    }
    if (session.options().dryRun) {
        return ExitSuccess; // an error would only be about what is not there for want of a run
    }
    const auto outcomes = outcomesOf(transfer, facts);
    const int status = finish(session, **operation, transfer, result, outcomes);
    tellOutcomes(session, outcomes, facts.skipped, transfer.showTheirs);
    const bool isToBeSeen = facts.holdsSettled() || facts.holdsLeft();
    return status == ExitSuccess && isToBeSeen ? ExitConflicts : status;
}

void addTheirsOption(Subcommand& command, bool& dropsTheirs) {
    command.flag("--no-theirs", dropsTheirs,
                 "Do not save their version beside a file where yours was kept");
}

String workingDirectory() {
    std::error_code ignored;
    return std::filesystem::current_path(ignored).string();
}

std::size_t itemCountOf(const ChangeFacts& facts) {
    std::set<std::string> paths;
    for (const ChangedItem& item : facts.items) {
        paths.insert(item.path.str());
    }
    return paths.size();
}

std::string itemsIn(const ChangeFacts& facts) {
    const std::size_t count = itemCountOf(facts);
    return count == 0 ? "" : " (" + counted(count, "item") + ")";
}

std::string revisionIn(const ChangeFacts& facts) {
    return facts.revision ? " revision " + std::to_string(*facts.revision) : "";
}

} // namespace quen::tools
