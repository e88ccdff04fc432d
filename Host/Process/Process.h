#pragma once

#include "Foundation/Data.h"
#include "Foundation/String.h"
#include "Host/Process/RunClock.h"
#include "Host/RunSettings.h"

#include <chrono>
#include <functional>
#include <optional>
#include <stop_token>
#include <string_view>
#include <vector>

namespace quen {

/// What to run, and for how long.
struct ProcessInvocation {
    /// An absolute path. It is never looked up, and no shell sees it or the arguments.
    String launchPath;
    /// Without the program's own name. nil counts as the empty text.
    std::vector<String> arguments;
    /// Made to the host's own environment, which is read while the run starts: no other thread may
    /// change it meanwhile.
    EnvironmentChanges environment;
    /// Where the child starts; nil for the host's own working directory.
    String workingDirectory;

    /// The child gets a session and a process group of its own. It has no terminal then, so it can
    /// never stop to ask on one.
    ///
    /// With false it stays in the host's session and process group: a group of its own would be in
    /// the terminal's background, where asking stops a program for good. The price is that the end
    /// of the run can reach the child alone and not what the child started, and that the terminal's
    /// interrupt key reaches host and child.
    bool ownSession = true;

    /// The system asks the child to end (SIGTERM) when the thread of the run ends before it, which
    /// it does only with the whole host: killed, or crashed. What the child started is left to it.
    bool endsWithHost = false;

    RunLimits limits;
    /// How much of the run's time so far counts for none of the limits; empty for none. It never
    /// grows faster than the time. Called on the thread that runs, often. Must not throw.
    std::function<std::chrono::nanoseconds()> uncountedTime;

    /// With false the outcome's output stays empty: the watcher has had all of it, and memory does
    /// not grow with what the child writes.
    bool keepsOutput = true;

    /// Called with every piece of a stream as it arrives, in order, on the thread that runs; the
    /// outcome holds everything all the same. The bytes live during the call. The run stands still
    /// meanwhile, stop requests and limits included. One that throws ends the run as `outputLost`.
    using Watcher = std::function<void(std::string_view)>;
    Watcher outputWatcher;
    Watcher errorWatcher;
};

struct ProcessOutcome {
    RunEnd end = RunEnd::couldNotStart;
    /// How the child itself ended, whatever the reason: one of the two is set, the other not.
    /// Neither where no child ran or its status is unknown.
    std::optional<int> exitStatus;
    std::optional<int> signal;
    /// The system's reason (or this layer's, where it refused to ask the system) and its number as
    /// in errno. nil and 0 but for `couldNotStart` and `outputLost`; in a host without any memory
    /// left the text can be nil there too.
    String reason;
    int error = 0;
    /// Something that the child started still held that stream when the drain timeout had passed.
    bool leftOutputOpen = false;
    bool leftErrorsOpen = false;
    /// Everything the child wrote, never null. What its own children wrote may be cut short by the
    /// drain timeout. For `outputLost`: what came before.
    DataPtr output;
    DataPtr errors;
    /// Of the whole run, start included.
    std::chrono::microseconds duration{0};
};

/// Runs a program to its end on the calling thread and collects what it writes.
///
/// - The child reads from the null device, has the default signal mask and dispositions, and no
///   descriptor of the host's beyond 0, 1 and 2.
/// - The run is over when the child has ended and both streams are at their end, or the drain
///   timeout has passed since the child's end. A child that closes its streams and lives on is
///   waited for.
/// - A stop request or limit asks the child's process group to end (SIGTERM), and kills it after
/// the
///   termination grace (SIGKILL). What is left of the group when the run is over is then ended too.
///   Once the child has ended by itself, stop requests and limits change nothing.
/// - What the child started and left running when it ended by itself is left alone.
/// - A launch path that is not absolute, a zero byte in any text and an environment name that is
///   empty or holds `=` are refused as `couldNotStart`, with EINVAL; a working directory that
///   cannot be entered with the system's reason.
///
/// The child is always reaped. Two habits of a host make the system forget its status, and the end
/// is then `statusUnknown`: ignoring SIGCHLD (or SA_NOCLDWAIT), and a thread that waits for every
/// child. What such a child left running in its group is not ended, as the group's number may by
/// then be another's.
///
/// A child that turned into another user's process cannot be ended, and is waited for.
///
/// `clock` is for tests; it must outlive the run.
///
/// Threads: any number of runs may go on at once. Never throws.
ProcessOutcome runProcess(const ProcessInvocation& invocation, std::stop_token stop,
                          const RunClock& clock = RunClock::steady()) noexcept;

} // namespace quen
