#pragma once

#include "Foundation/Data.h"
#include "Foundation/String.h"
#include "QuenFoundation/QuenSourceControlRequest.h"

#include <functional>
#include <memory>
#include <optional>
#include <string_view>

namespace quen {

/// What an operation wants to have run.
struct ToolInvocation {
    /// The class that asks, for whoever keeps a record.
    String operation;
    String launchPath;
    StringArray arguments;
    /// Called with every piece of standard output as it arrives, in order, on the running thread;
    /// the run's output is complete all the same. A runner may leave it out for a whole run.
    std::function<void(std::string_view)> outputWatcher = {};
};

/// How a run ended.
enum class ToolEnd {
    /// By itself, with `exitStatus`, or killed by `signal`.
    ended,
    /// It never began; `reason` says why.
    couldNotStart,
    /// `cancel` was called; `exitStatus` or `signal` say how the tool then ended.
    cancelled,
    /// It took longer than its limit allows; `reason` names it.
    timedOut,
    /// It was silent longer than its limit allows; `reason` names it.
    fellSilent,
    /// The host could not keep what the tool wrote, or lost track of it; `reason` says why.
    failed,
};

/// A finished run.
struct ToolRun {
    ToolEnd end = ToolEnd::ended;
    /// Absent after a signal, and where the tool never began.
    std::optional<int> exitStatus;
    std::optional<int> signal;
    /// Everything written to standard output and to standard error; never null.
    DataPtr output;
    DataPtr errors;
    /// In words that can follow a colon; nil where there is nothing to say.
    String reason;
};

/// Lets a run be ended from another thread.
class ToolCanceller {
public:
    ToolCanceller() = default;
    ToolCanceller(const ToolCanceller&) = delete;
    ToolCanceller& operator=(const ToolCanceller&) = delete;
    virtual ~ToolCanceller() = default;

    /// Before, during or after the run, from any thread, any number of times.
    virtual void cancel() = 0;
};

/// Runs tools. One runner serves many threads at once.
class ToolRunner {
public:
    ToolRunner() = default;
    ToolRunner(const ToolRunner&) = delete;
    ToolRunner& operator=(const ToolRunner&) = delete;
    virtual ~ToolRunner() = default;

    /// What ends one run early; made before the run, handed to it. Never null.
    virtual std::shared_ptr<ToolCanceller> makeCanceller() = 0;

    /// Runs the tool to its end on the calling thread. `canceller` is one that this runner made,
    /// for this run alone. Never throws: what goes wrong is told in the outcome.
    virtual ToolRun run(const ToolInvocation& invocation, ToolCanceller& canceller) = 0;
};

using ToolRunnerPtr = std::shared_ptr<ToolRunner>;

} // namespace quen
