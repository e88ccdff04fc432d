#pragma once

#include "Foundation/Data.h"
#include "Foundation/String.h"
#include "Host/Process/ProcessCanceller.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace quen {

/// What to run, and for how long.
struct ProcessInvocation {
    /// An absolute path. It is never looked up, and no shell sees it or the arguments.
    String launchPath;
    /// Without the program's own name. nil counts as the empty text.
    std::vector<String> arguments;
    /// Set over the host's own environment; a nil value takes the variable out. The host's own is
    /// read while the run starts: no other thread may change it meanwhile.
    std::vector<std::pair<String, String>> environment;

    /// The child gets a session and a process group of its own. It has no terminal then, so it can
    /// never stop to ask on one.
    ///
    /// With false it stays in the host's session and process group: a group of its own would be in
    /// the terminal's background, where asking stops a program for good. The price is that the end
    /// of the run can reach the child alone and not what the child started, and that the terminal's
    /// interrupt key reaches host and child.
    bool ownSession = true;

    /// The longest run.
    std::optional<std::chrono::milliseconds> totalLimit;
    /// The longest time without a byte on either stream.
    std::optional<std::chrono::milliseconds> silenceLimit;
    /// From asking the child to end (SIGTERM) to ending it (SIGKILL).
    std::chrono::milliseconds politeness{2000};
    /// How long something that the child started may keep a stream open after the child's end.
    std::chrono::milliseconds grace{250};

    /// Called with every piece of a stream as it arrives, in order, on the thread that runs; the
    /// outcome holds everything all the same. The bytes live during the call. The run stands still
    /// meanwhile, cancel and limits included. One that throws ends the run as `outputLost`.
    using Watcher = std::function<void(std::string_view)>;
    Watcher outputWatcher;
    Watcher errorWatcher;
};

/// Why a run ended.
enum class ProcessEnd {
    exited,        ///< by itself, with `exitStatus`
    signalled,     ///< by `signal`, which was not this run's doing
    statusUnknown, ///< by itself; the status was not to be had, see `runProcess`
    cancelled,     ///< by the canceller
    timedOut,      ///< by `totalLimit`
    fellSilent,    ///< by `silenceLimit`
    outputLost,    ///< it was ended because its output could not be kept, for `reason`
    couldNotStart, ///< nothing ran, for `reason`
};

struct ProcessOutcome {
    ProcessEnd end = ProcessEnd::couldNotStart;
    /// How the child itself ended, whatever the reason: one of the two is set, the other not.
    /// Neither where no child ran or its status is unknown.
    std::optional<int> exitStatus;
    std::optional<int> signal;
    /// The system's reason (or this layer's, where it refused to ask the system) and its number as
    /// in errno. nil and 0 but for `couldNotStart` and `outputLost`; in a host without any memory
    /// left the text can be nil there too.
    String reason;
    int error = 0;
    /// Something that the child started still held a stream when the grace had passed.
    bool leftStreamOpen = false;
    /// Everything the child wrote, never null. What its own children wrote may be cut short by the
    /// grace. For `outputLost`: what came before.
    DataPtr output;
    DataPtr errors;
    /// Of the whole run, start included.
    std::chrono::microseconds duration{0};
};

/// Runs a program to its end on the calling thread and collects what it writes.
///
/// - The child reads from the null device, has the default signal mask and dispositions, and no
///   descriptor of the host's beyond 0, 1 and 2. Its working directory is the host's.
/// - The run is over when the child has ended and both streams are at their end; see `grace`. A
///   child that closes its streams and lives on is waited for.
/// - A cancel or limit asks the child's process group to end (SIGTERM), and ends it after
///   `politeness` (SIGKILL). What is left of the group when the run is over is then ended too. Once
///   the child has ended by itself, cancel and limits change nothing.
/// - What the child started and left running when it ended by itself is left alone.
/// - A launch path that is not absolute, a zero byte in any text and an environment name that is
///   empty or holds `=` are refused as `couldNotStart`, with EINVAL.
///
/// The child is always reaped. Two habits of a host make the system forget its status, and the end
/// is then `statusUnknown`: ignoring SIGCHLD (or SA_NOCLDWAIT), and a thread that waits for every
/// child. What such a child left running in its group is not ended, as the group's number may by
/// then be another's.
///
/// A child that turned into another user's process cannot be ended, and is waited for.
///
/// Threads: any number of runs may go on at once. Never throws.
ProcessOutcome runProcess(const ProcessInvocation& invocation,
                          ProcessCanceller& canceller) noexcept;

} // namespace quen
