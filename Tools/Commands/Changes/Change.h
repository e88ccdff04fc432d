#pragma once

#include "Tools/Commands/Changes/Summaries.h"
#include "Tools/Commands/Session/Session.h"

#include <functional>
#include <string>

namespace quen::tools {

/// A change as a sub-command wants it made.
struct Change {
    QuenSourceControlRequestPtr request;
    /// A place in the working copy that the client writes to; empty where it writes to none.
    std::string workingCopy;
    /// That place is the top of a working copy that the change itself makes.
    bool makesWorkingCopy = false;
    Follow follow = Follow::progress;
};

/// How a person is told of a change that was made: a sentence, from what the operation gives and
/// what the client has said.
using ChangeSummary = std::function<std::string(const Value& result, const ChangeOutput& output)>;

/// Makes the change and tells how it went: as JSON (`changeRecord`, null where it was not made) or
/// the summary on standard output, and on standard error what went wrong, with what to do where the
/// working copy may have been left locked. The exit status.
int makeChange(Session& session, const Change& change, const ChangeSummary& summary);

/// Tells of a change that there was nothing to make, likewise. ExitSuccess.
int tellNothingToDo(const Session& session, const std::string& summary);

/// The second half of that, for an operation that was performed.
int finishChange(const Session& session, const Outcome<QuenSourceControlOperationPtr>& operation,
                 const Change& change, const ChangeSummary& summary);

/// The last part of that: what went wrong, once the result has been printed.
int concludeChange(const Session& session, const QuenSourceControlOperation& performed,
                   const Change& change);

} // namespace quen::tools
