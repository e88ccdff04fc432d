#pragma once

#include "Foundation/Value.h"
#include "Host/ClientMessage.h"
#include "Host/TaskFailure.h"
#include "Host/ToolRunner.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace quen {

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

/// The error with what was found out about why a server let nobody in; nil stays nil. `message` is
/// the client's own.
Error withSignInFailure(const Error& error, const SignInFailure& failure, const String& message);

/// The error of what was cancelled.
Error cancelledError();

/// The error of a run that did not come to its own end; nil for one that did. Where the tool was
/// writing to a working copy (`writes`), the recovery suggestion says what that may have left.
Error errorOfInterruptedRun(const ToolInvocation& invocation, const ToolRun& run, bool writes);

/// What the tool wrote to standard error. Bytes in no known encoding still tell more than nothing.
ClientMessage messageOfRun(const ToolRun& run);

/// What a run's outcome means as an error, judged without knowledge of what was asked for; nil for
/// a success. `writes` as above. A QuenSourceControlTaskOperation decides in the same way, but asks
/// its subclass to translate the complaint and to read the output.
Error errorOfRun(const ToolInvocation& invocation, const ToolRun& run, bool writes);

/// The error of a complaint, `translated` by whoever knows it, of a run that ended by itself.
Error errorOfComplaint(const Error& translated, const RunFacts& facts);

/// The error of a run that ended by itself, but whose output may lack its rest; nil where it does
/// not, and where a report in XML shows by itself whether it is whole.
Error errorOfCutOutput(const ToolRun& run);

/// The error of a run that failed and said nothing that counts; nil where it did not fail, and for
/// an absent property.
Error errorOfSilentFailure(const RunFacts& facts);

/// Which of two errors says it better: that of `parseData`, or that made of the complaint.
Error betterError(const Error& parsed, const Error& translated);

} // namespace quen
