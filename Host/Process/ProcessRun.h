#pragma once

#include "Host/Process/CancelWatch.h"
#include "Host/Process/ChildProcess.h"
#include "Host/Process/ChildStream.h"
#include "Host/Process/Process.h"

#include <chrono>
#include <cstddef>

namespace quen {

/// A started child's run to its end: one loop that waits for whatever happens next (output, the
/// child's end, a cancel, a deadline) and acts on it.
class ProcessRun {
public:
    using Clock = std::chrono::steady_clock;

    /// What it is given must outlive it.
    ProcessRun(const ProcessInvocation& invocation, const CancelWatch& cancel, ChildProcess& child,
               ChildStream& output, ChildStream& errors, Clock::time_point start) noexcept;

    /// Returns when the child has ended and is reaped, and its streams are at their end or given
    /// up. Fills in how it ended.
    void finish(ProcessOutcome& outcome) noexcept;

private:
    enum class Phase { running, asked, killed, ended };

    bool isOver() const noexcept;
    bool isResting(Clock::time_point now) const noexcept { return now < outputRest_; }
    Clock::time_point nextLook(Clock::time_point now) const noexcept;
    void wait() noexcept;
    void takeOutput() noexcept;
    template <typename Read> std::size_t keep(Read read) noexcept;
    bool noteEnd() noexcept;
    void enforce() noexcept;
    void stop(RunEnd reason) noexcept;
    void askToEnd() noexcept;
    void killAtOnce() noexcept;
    void giveUp(int error) noexcept;
    void lose(int error, const char* reason) noexcept;
    void report(ProcessOutcome& outcome) const noexcept;

    const ProcessInvocation& invocation_;
    const CancelWatch& cancel_;
    ChildProcess& child_;
    ChildStream& output_;
    ChildStream& errors_;
    const std::size_t outputCapacity_;

    Phase phase_ = Phase::running;
    Clock::time_point totalDeadline_ = Clock::time_point::max();
    Clock::time_point idleDeadline_ = Clock::time_point::max();
    Clock::time_point phaseDeadline_ = Clock::time_point::max(); // of `asked` and `ended`
    Clock::time_point outputRest_ = Clock::time_point::min(); // no output is waited for until then
    bool wasAsked_ = false;
    std::optional<RunEnd> stopReason_; // nothing while the child's own end is what counts
    int lossError_ = 0;
    String lossReason_;
};

} // namespace quen
