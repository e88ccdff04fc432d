#pragma once

#include "Foundation/String.h"

#include <chrono>
#include <optional>
#include <utility>
#include <vector>

namespace quen {

/// Changes to the environment that a child process inherits: each sets a variable, or removes it
/// where the value is nil. Of several for one variable the last counts.
using EnvironmentChanges = std::vector<std::pair<String, String>>;

/// How long a run may take.
struct RunLimits {
    /// The longest run, from the start; none by default.
    std::optional<std::chrono::milliseconds> total = {};
    /// The longest time without a byte on either stream; none by default.
    std::optional<std::chrono::milliseconds> idle = {};
    /// From asking the tool to end (SIGTERM) to killing it (SIGKILL).
    std::chrono::milliseconds terminationGrace{2000};
    /// How long something that the tool started may keep a stream open after the tool's own end.
    std::chrono::milliseconds drainTimeout{250};

    friend bool operator==(const RunLimits&, const RunLimits&) = default;
};

/// How a run ended.
enum class RunEnd {
    ended,         ///< by itself, with an exit status or by a signal that was not the run's doing
    statusUnknown, ///< by itself; the system had forgotten how, see `runProcess`
    cancelled,     ///< by its stop token
    timedOut,      ///< by `RunLimits::total`
    idleTimedOut,  ///< by `RunLimits::idle`
    outputLost,    ///< it was ended because its output could not be kept
    couldNotStart, ///< nothing ran
};

} // namespace quen
