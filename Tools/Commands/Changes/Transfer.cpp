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

/// Performs the change with a reader of its own at the client's output.
Outcome<QuenSourceControlOperationPtr> perform(Session& session, const Change& change,
                                               ChangeFacts& facts) {
    ChangeFactsReader reader;
    const RunContext::Scope scope(RunContext::current().withOutputWatcher(
        [&reader](const QuenSourceControlOperation& /*operation*/, std::string_view piece) {
            reader.take(piece);
        }));
    auto operation = session.perform(change.request, change.follow);
    facts = reader.takeFacts();
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
           const Transfer& transfer, const ChangeFacts& facts,
           const std::vector<ConflictOutcome>& outcomes) {
    const bool isDone = saysOnlyConflictsLeft(performed.error());
    const bool isMade = isDone || (!performed.error() && !session.wasStopped(performed));
    const std::string summary = isMade ? transfer.summary(facts) : "";
    if (session.options().json) {
        Dictionary record = changeRecord(performed.result(), summary, session.output());
        addTransfer(record, facts, outcomes);
        printJson(record);
    } else if (isMade) {
        std::cout << summary << '\n';
    }
    return isDone ? ExitSuccess : concludeChange(session, performed, transfer.change);
}

} // namespace

int makeTransfer(Session& session, const Transfer& transfer) {
    ChangeFacts facts;
    const auto operation = perform(session, transfer.change, facts);
    if (!operation) {
        return operation.status();
    }
    if (session.options().dryRun) {
        return ExitSuccess; // an error would only be about what is not there for want of a run
    }
    const auto outcomes = outcomesOf(transfer, facts);
    const int status = finish(session, **operation, transfer, facts, outcomes);
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
