#pragma once

#include "Tests/Faults/OperationKinds.h"

#include <cstdint>
#include <string>

namespace quen::test {

/// What a misbehaving client's run amounts to, whichever operation it is a run of.
struct Verdict {
    /// Set where the run did not come to its own end: the error of every kind then.
    Error interruption = {};
    /// The client had begun, and was ended: it may have left a lock.
    bool wasEnded = false;
    /// What standard error, or a bad end without a word, amounts to; nil for nothing.
    Error complaint = {};
    /// The complaint has no numbers, or none but those of absence: what a parser found missing then
    /// says it better.
    bool tellsOnlyOfAbsence = true;
    /// The reason, as the XML reader numbers it, why standard output is not a report; 0 where it
    /// is.
    std::int64_t parserCode = 0;
    /// Something that the client left behind held standard output open.
    bool leftOutputOpen = false;
};

/// The error that an operation of a kind has after such a run, as `lineOf` writes it. Of a parser's
/// error no more than domain and code.
std::string expectedLine(const OperationKind& kind, const Verdict& verdict);

/// `lineOf` the operation's error, as `expectedLine` writes it.
std::string actualLine(const QuenSourceControlOperation& operation);

/// An error of the host about a run.
Error hostError(std::int64_t code, const String& description);

} // namespace quen::test
