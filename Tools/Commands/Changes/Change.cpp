#include "Tools/Commands/Changes/Change.h"

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

int makeChange(Session& session, const Change& change, const CommonOptions& options,
               const ChangeSummary& summary) {
    return finishChange(session, session.perform(change.request, change.follow), change, options,
                        summary);
}

int finishChange(Session& session, const QuenSourceControlOperationPtr& operation,
                 const Change& change, const CommonOptions& options, const ChangeSummary& summary) {
    if (operation == nullptr) {
        return ExitFailure;
    }
    if (options.json) {
        printJson(operation->result());
    } else if (!operation->error() && !session.wasStopped(*operation)) {
        printForPeople(summary(operation->result(), session.report()), session.report());
    }
    const int status = session.finish(*operation);
    tellOfCleanup(session, *operation, change);
    return status;
}

std::string counted(std::size_t count, const std::string& noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

std::string committedSummary(const Value& /*result*/, const ClientReport& report) {
    return report.revision().empty() ? "Nothing to commit."
                                     : "Committed revision " + report.revision() + ".";
}

} // namespace quen::tools
