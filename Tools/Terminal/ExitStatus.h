#pragma once

namespace quen::tools {

/// Exit statuses of every sub-command but `request`, which has its own.
enum ExitStatus : int {
    ExitSuccess = 0,
    /// The operation ended with an error.
    ExitFailure = 1,
    /// The command line was not understood.
    ExitUsage = 2,
    /// It was done, and there is something for a person to look at: conflicts that were decided for
    /// what was here, conflicts that are left, items that were skipped.
    ExitConflicts = 3,
    /// It was ended early, by the interrupt key or a signal that asks to end.
    ExitInterrupted = 130,
};

} // namespace quen::tools
