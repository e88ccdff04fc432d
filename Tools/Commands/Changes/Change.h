#pragma once

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
using ChangeSummary = std::function<std::string(const Value& result, const ClientReport& report)>;

/// Makes the change and tells how it went: the records as JSON or the summary on standard output,
/// and on standard error what went wrong, with what to do where the working copy may have been left
/// locked. The exit status.
int makeChange(Session& session, const Change& change, const CommonOptions& options,
               const ChangeSummary& summary);

/// The second half of that, for an operation that was performed; null where there was none to
/// perform, for a reason that has been told.
int finishChange(Session& session, const QuenSourceControlOperationPtr& operation,
                 const Change& change, const CommonOptions& options, const ChangeSummary& summary);

/// `1 item`, `12 items`; `noun` is the plural but for its `s`.
std::string counted(std::size_t count, const std::string& noun);

/// `Committed revision 12.`; nothing to commit where the client named no revision.
std::string committedSummary(const Value& result, const ClientReport& report);

} // namespace quen::tools
