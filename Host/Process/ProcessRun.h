#pragma once

#include "Host/Process/CancelWatch.h"
#include "Host/Process/ChildProcess.h"
#include "Host/Process/ChildStream.h"
#include "Host/Process/Process.h"

#include <cstddef>

namespace quen {

/// A started child's run to its end: one loop that waits for whatever happens next (output, the
/// child's end, a cancel, a deadline) and acts on it.
class ProcessRun {
public:
    using TimePoint = RunClock::TimePoint;

    /// What it is given must outlive it.
    ProcessRun(const ProcessInvocation& invocation, const CancelWatch& cancel, ChildProcess& child,
               ChildStream& output, ChildStream& errors, const RunClock& clock,
               TimePoint start) noexcept;

    /// Returns when the child has ended and is reaped, and its streams are at their end or given
    /// up. Fills in how it ended.
    void finish(ProcessOutcome& outcome) noexcept;

private:
    enum class Phase { running, asked, killed, ended };

    bool isOver() const noexcept;
    bool isPausing(TimePoint now) const noexcept { return now < outputPauseEnd_; }
    TimePoint nextLook(TimePoint now) const noexcept;
    std::chrono::nanoseconds uncounted() const noexcept;
    void wait() noexcept;
    void takeOutput() noexcept;
    void widenOutput(std::size_t size) noexcept;
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
    const RunClock& clock_;
    std::size_t outputCapacity_ = 0;
    std::size_t outputTaken_ = 0;
    bool writesSmallPieces_ = true;
    bool hasGathered_ = false; // what is read next is what came in a pause

    Phase phase_ = Phase::running;
    // Both as if no time were left uncounted.
    TimePoint totalDeadline_ = TimePoint::max();
    TimePoint idleDeadline_ = TimePoint::max();
    TimePoint phaseDeadline_ = TimePoint::max();  // of `asked` and `ended`
    TimePoint outputPauseEnd_ = TimePoint::min(); // no output is waited for until then
    bool wasAsked_ = false;
    std::optional<RunEnd> stopReason_; // nothing while the child's own end is what counts
    int lossError_ = 0;
    String lossReason_;
};

} // namespace quen
