#include "Tools/Commands/Changes/Change.h"

#include "Foundation/Lines.h"
#include "Tools/Commands/Changes/ChangeRecords.h"
#include "Tools/Commands/Session/CleanupAdvice.h"

#include <filesystem>
#include <iostream>

namespace quen::tools {

namespace {

/// Empty where nothing can have been left locked.
std::string cleanupCommandOf(const Change& change) {
    const bool wasNeverMade =
        change.makesWorkingCopy &&
        !std::filesystem::exists(std::filesystem::path(change.workingCopy) / ".svn");
    return change.workingCopy.empty() || wasNeverMade ? std::string()
                                                      : cleanupCommandFor(change.workingCopy);
}

/// Of a client that was ended early. Only a lock that is there is worth a word.
void tellOfCleanup(const Session& session, const Change& change) {
    const std::string command = cleanupCommandOf(change);
    if (!command.empty() && isLeftLocked(change.workingCopy)) {
        session.tell("The working copy is locked; run: " + command);
    }
}

/// Whether a commit that was interrupted is made all the same.
void tellOfCommit(const Session& session) {
    const ChangeOutput& output = session.output();
    if (output.commit() == ChangeOutput::Commit::made) {
        session.tell("Revision " + output.revision() + " was committed before that.");
    } else if (output.commit() == ChangeOutput::Commit::underWay) {
        session.tell(
            "It may already have been committed: `quen log -l 1` shows the last revision.");
    }
}

/// A hook that fails after the commit changes nothing about it.
void tellOfHooks(const Session& session) {
    const std::string& warning = session.output().warning();
    for (const std::string_view line : linesOf(warning)) {
        session.tell("Warning: " + std::string(line));
    }
}

} // namespace

int makeChange(Session& session, const Change& change, const ChangeSummary& summary) {
    return finishChange(session, session.perform(change.request, change.follow), change, summary);
}

int finishChange(const Session& session, const Outcome<QuenSourceControlOperationPtr>& operation,
                 const Change& change, const ChangeSummary& summary) {
    if (!operation) {
        return operation.status();
    }
    const QuenSourceControlOperation& performed = **operation;
    const bool isMade = !performed.error() && !session.wasStopped(performed);
    const std::string told = isMade ? summary(performed.result(), session.output()) : "";
    if (session.options().json) {
        printJson(isMade ? Value(changeRecord(performed.result(), told, session.output()))
                         : Value());
    } else if (isMade && !session.options().dryRun) {
        std::cout << told << '\n';
    }
    return concludeChange(session, performed, change);
}

int tellNothingToDo(const Session& session, const std::string& summary) {
    if (session.options().json) {
        printJson(changeRecord(Value(), summary, ChangeOutput()));
    } else {
        std::cout << summary << '\n';
    }
    return ExitSuccess;
}

int concludeChange(const Session& session, const QuenSourceControlOperation& performed,
                   const Change& change) {
    const int status = session.finish(performed);
    if (session.wasStopped(performed)) {
        tellOfCommit(session);
        tellOfCleanup(session, change);
    }
    tellOfHooks(session);
    return status;
}

} // namespace quen::tools
