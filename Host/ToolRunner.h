#pragma once

#include "Foundation/Data.h"
#include "Foundation/Export.h"
#include "Foundation/String.h"
#include "Host/Credentials/SignInFailure.h"
#include "Host/RunSettings.h"
#include "QuenFoundation/QuenSourceControlRequest.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string_view>

namespace quen {

class QuenSourceControlOperation;

/// What an operation wants to have run, and how.
struct ToolInvocation {
    /// The name of the class that asks, for whoever keeps a record.
    String operationClass;
    /// An absolute path.
    String launchPath;
    StringArray arguments;
    /// The operation that asks; null where none does. It lives as long as the run: a record that is
    /// kept longer leaves it out.
    const QuenSourceControlOperation* operation = nullptr;
    /// Made to the host's own environment, for this run.
    EnvironmentChanges environment = {};
    /// Where the tool runs; nil for the host's own working directory.
    String workingDirectory = {};
    RunLimits limits = {};
    /// Called with every piece of standard output as it arrives, in order, on the running thread;
    /// the run's output is complete all the same. A runner may leave it out for a whole run. It
    /// belongs to the operation: a record leaves it out.
    std::function<void(std::string_view)> outputWatcher = {};
    /// How much of the run's time so far counts for none of its limits, as a person was being asked
    /// something; empty for none. It never grows faster than the time. Called on the running
    /// thread, during the run. Must not throw. A record leaves it out.
    std::function<std::chrono::nanoseconds()> uncountedTime = {};
};

/// A finished run.
struct ToolRun {
    RunEnd end = RunEnd::ended;
    /// How the tool itself ended, whatever `end` says. Absent after a signal, and where the tool
    /// never began.
    std::optional<int> exitStatus;
    std::optional<int> signal;
    /// Everything written to standard output and to standard error; never null.
    DataPtr output;
    DataPtr errors;
    /// In words that can follow a colon; nil where there is nothing to say.
    String reason;
    /// The tool ended by itself, but something that it had started still held standard output open
    /// when the drain timeout had passed: the output may lack its rest.
    bool leftOutputOpen = false;
    /// Why a server did not let the tool in, where a runner has found that out.
    std::optional<SignInFailure> signInFailure = std::nullopt;
};

/// Runs tools. One runner serves many threads at once.
///
/// A runner may wrap another one: hand it the invocation, changed or not, and change, record or
/// repeat what it answers. One that repeats a run hands the watcher the pieces of each: an
/// operation that reads what arrives finds that it has not read the final output alone, and reads
/// that as a whole.
class QUEN_EXPORT ToolRunner {
public:
    ToolRunner() = default;
    ToolRunner(const ToolRunner&) = delete;
    ToolRunner& operator=(const ToolRunner&) = delete;
    virtual ~ToolRunner() = default;

    /// Runs the tool to its end on the calling thread. `stop` ends it early, also before it starts.
    /// Never throws: what goes wrong is told in the outcome.
    virtual ToolRun run(const ToolInvocation& invocation, std::stop_token stop) = 0;
};

using ToolRunnerPtr = std::shared_ptr<ToolRunner>;

} // namespace quen
