#include "Tools/Commands/Changes/Change.h"

#include "Foundation/Lines.h"
#include "Tools/Commands/Session/CleanupAdvice.h"
#include "Tools/Commands/Session/Records.h"
#include "Tools/Terminal/Style.h"

#include <filesystem>
#include <iostream>

namespace quen::tools {

namespace {

void printForPeople(const std::string& summary, const ClientReport& report) {
    std::cout << summary << '\n';
    for (const std::string_view line : linesOf(report.conflicts())) {
        std::cout << printable(line) << '\n';
    }
}

/// Empty where nothing can have been left locked.
std::string cleanupCommandOf(const Change& change) {
    const bool wasNeverMade =
        change.makesWorkingCopy &&
        !std::filesystem::exists(std::filesystem::path(change.workingCopy) / ".svn");
    return change.workingCopy.empty() || wasNeverMade ? std::string()
                                                      : cleanupCommandFor(change.workingCopy);
}

void tellOfCleanup(const Session& session, const QuenSourceControlOperation& operation,
                   const Change& change) {
    const std::string command = cleanupCommandOf(change);
    if (command.empty()) {
        return;
    }
    if (session.wasStopped(operation)) {
        session.tell("The working copy may have been left locked. If it was, clean it up with: " +
                     command);
    } else if (saysLocked(operation.error())) {
        session.tell("Unless another svn is at work there, clean it up with: " + command);
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
    if (session.options().json) {
        printJson(performed.result());
    } else if (!performed.error() && !session.wasStopped(performed)) {
        printForPeople(summary(performed.result(), session.report()), session.report());
    }
    const int status = session.finish(performed);
    tellOfCleanup(session, performed, change);
    return status;
}

} // namespace quen::tools
