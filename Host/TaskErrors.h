#pragma once

#include "Foundation/Value.h"
#include "Host/ClientMessage.h"
#include "Host/ToolRunner.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace quen {

/// The domain of the errors that the host itself makes about a run. The code is the client's first
/// number (155007 for E155007), or its exit status, or 128 and the signal's number, or one of the
/// negative codes below.
extern const String QuenSourceControlTaskErrorDomain;
/// User info: all the client's numbers, an array of integers in the order printed.
extern const String QuenSourceControlTaskErrorCodesKey;

enum TaskErrorCode : std::int64_t {
    TaskErrorCouldNotStart = -1,
    TaskErrorCancelled = -2,
    TaskErrorTimedOut = -3,
    /// The host could not keep or read what the tool wrote.
    TaskErrorFailed = -4,
};

/// How a run ended, as far as the translation of its complaint needs to know.
struct RunFacts {
    std::optional<int> exitStatus;
    std::optional<int> signal;
    std::vector<ClientNumber> numbers;

    bool hasFailed() const { return signal.has_value() || exitStatus.value_or(0) != 0; }
};

Error taskError(std::int64_t code, const String& description);

/// The generic translation of a complaint that nobody knows better. nil for notices: only blank
/// lines or warnings of a run that succeeded, and the absence of a property; these are logged at
/// level 2.
Error genericError(const String& message, const RunFacts& facts);

/// The error of a run that did not come to its own end; nil for one that did.
Error errorOfInterruptedRun(const ToolInvocation& invocation, const ToolRun& run);

/// The error of a run that failed and said nothing that counts; nil where it did not fail, and for
/// an absent property.
Error errorOfSilentFailure(const RunFacts& facts);

/// Which of two errors says it better: that of `parseData`, or that made of the complaint.
Error betterError(const Error& parsed, const Error& translated);

} // namespace quen
