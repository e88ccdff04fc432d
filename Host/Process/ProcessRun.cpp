#include "Host/Process/ProcessRun.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <limits>
#include <new>
#include <poll.h>
#include <system_error>

namespace quen {

namespace {

constexpr std::chrono::milliseconds lookInterval{2}; // where the system cannot tell of the end

/// A child that writes line by line would wake this thread for each, and pay for it. Such a one is
/// left alone for a moment after each piece, to gather more; the child's end and the end of the
/// stream are seen at once all the same. One that writes in large pieces, as it does with the
/// content of a file, would only have to wait for room in the pipe: which kind it is shows in what
/// lies in the pipe when nobody has waited. What comes first is handed on as it comes: somebody may
/// wait for it.
constexpr std::chrono::milliseconds gatheringTime{2};
constexpr std::size_t smallPiece = 8 * 1024;
constexpr std::size_t handedOnAtOnce = 8 * 1024;

/// What a child writes in that time must fit into the pipe, or the child waits. Only one that is
/// seen to write so fast gets the most that can be had, which a user has only for a few dozen
/// pipes.
constexpr std::size_t widePipe = 256 * 1024;
constexpr std::size_t widestPipe = 1024 * 1024;

/// Any limit may be given, the largest number too.
RunClock::TimePoint after(RunClock::TimePoint time, std::chrono::milliseconds span) noexcept {
    const auto most =
        std::chrono::floor<std::chrono::milliseconds>(RunClock::TimePoint::max() - time);
    return span < most ? time + span : RunClock::TimePoint::max();
}

/// Likewise for a deadline that is put off; one that is never stays so.
RunClock::TimePoint putOff(RunClock::TimePoint deadline, std::chrono::nanoseconds span) noexcept {
    return span < RunClock::TimePoint::max() - deadline ? deadline + span
                                                        : RunClock::TimePoint::max();
}

/// In whole milliseconds, upwards: a timeout cut short would only be waited for again.
int pollTimeout(RunClock::TimePoint now, RunClock::TimePoint deadline) noexcept {
    if (deadline == RunClock::TimePoint::max()) {
        return -1;
    }
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - now).count();
    return static_cast<int>(std::clamp<decltype(left)>(left, 0, std::numeric_limits<int>::max()));
}

} // namespace

ProcessRun::ProcessRun(const ProcessInvocation& invocation, const CancelWatch& cancel,
                       ChildProcess& child, ChildStream& output, ChildStream& errors,
                       const RunClock& clock, TimePoint start) noexcept
    : invocation_(invocation), cancel_(cancel), child_(child), output_(output), errors_(errors),
      clock_(clock) {
    widenOutput(widePipe);
    if (invocation.limits.total) {
        totalDeadline_ = after(start, *invocation.limits.total);
    }
    if (invocation.limits.idle) {
        idleDeadline_ = after(start, *invocation.limits.idle);
    }
}

void ProcessRun::finish(ProcessOutcome& outcome) noexcept {
    while (!isOver()) {
        wait();
        enforce();
    }
    if (wasAsked_) {
        child_.signal(SIGKILL); // for what is left of its group
    }
    child_.reap();
    report(outcome);
}

bool ProcessRun::isOver() const noexcept {
    return phase_ == Phase::ended &&
           ((!output_.isOpen() && !errors_.isOpen()) || clock_.now() >= phaseDeadline_);
}

std::chrono::nanoseconds ProcessRun::uncounted() const noexcept {
    return invocation_.uncountedTime ? invocation_.uncountedTime() : std::chrono::nanoseconds(0);
}

/// The latest time to look again, if nothing happens before.
RunClock::TimePoint ProcessRun::nextLook(TimePoint now) const noexcept {
    TimePoint next = phase_ == Phase::running
                         ? putOff(std::min(totalDeadline_, idleDeadline_), uncounted())
                         : phaseDeadline_;
    if (isPausing(now)) {
        next = std::min(next, outputPauseEnd_);
    }
    if (phase_ != Phase::ended && child_.endDescriptor() < 0) {
        next = std::min(next, after(now, lookInterval));
    }
    return next;
}

/// Waits for the next thing to happen, and takes in what has.
void ProcessRun::wait() noexcept {
    // poll ignores negative numbers: a descriptor that stays readable for good is left out once it
    // has been seen. The end of a stream is reported even where nothing is asked for. The clock is
    // read once: if a pause of the output were over for the timeout and not yet for the output,
    // nothing would end the wait, while the child waits for room in a full pipe.
    const TimePoint now = clock_.now();
    const short wanted = isPausing(now) ? 0 : POLLIN;
    std::array<pollfd, 4> events = {{
        {output_.number(), wanted, 0},
        {errors_.number(), POLLIN, 0},
        {phase_ == Phase::ended ? -1 : child_.endDescriptor(), POLLIN, 0},
        {phase_ == Phase::running ? cancel_.number() : -1, POLLIN, 0},
    }};
    const auto& [output, errors, end, cancel] = events;
    if (::poll(events.data(), events.size(), pollTimeout(now, nextLook(now))) < 0) {
        return errno == EINTR ? void() : giveUp(errno);
    }
    if (output.revents != 0) {
        takeOutput();
    }
    if (errors.revents != 0 && errors_.isOpen()) {
        keep([this] { return errors_.read(); });
    }
    if (end.revents != 0 || child_.endDescriptor() < 0) {
        noteEnd();
    }
}

void ProcessRun::takeOutput() noexcept {
    const std::size_t count = keep([this] { return output_.readAll(); });
    outputTaken_ += count;
    if (!hasGathered_) {
        writesSmallPieces_ = count < smallPiece;
    }
    const bool leavesRoom = count < outputCapacity_ / 2;
    hasGathered_ = writesSmallPieces_ && leavesRoom && outputTaken_ > handedOnAtOnce;
    if (hasGathered_) {
        outputPauseEnd_ = after(clock_.now(), gatheringTime);
    } else if (!leavesRoom) {
        widenOutput(widestPipe);
    }
}

void ProcessRun::widenOutput(std::size_t size) noexcept {
    if (outputCapacity_ < size && output_.isOpen()) {
        output_.widen(size);
        outputCapacity_ = output_.capacity();
    }
}

/// Reads, and bears what reading throws. How many bytes came.
template <typename Read> std::size_t ProcessRun::keep(Read read) noexcept {
    try {
        const std::size_t count = read();
        if (count > 0 && invocation_.limits.idle) {
            idleDeadline_ = after(clock_.now() - uncounted(), *invocation_.limits.idle);
        }
        return count;
    } catch (const std::bad_alloc&) {
        lose(ENOMEM, nullptr);
    } catch (const std::system_error& error) {
        lose(error.code().value(), error.what());
    } catch (const std::exception& error) {
        lose(0, error.what());
    } catch (...) {
        lose(0, "a watcher of the output failed");
    }
    return 0;
}

/// Whether the child has ended. What it wrote itself is in the pipes by then, and is taken at once;
/// only what its own children write is left to the drain timeout.
bool ProcessRun::noteEnd() noexcept {
    if (phase_ != Phase::ended && child_.lookForEnd()) {
        phase_ = Phase::ended;
        keep([this] { return output_.readAll(); });
        keep([this] { return errors_.readAll(); });
        phaseDeadline_ = after(clock_.now(), invocation_.limits.drainTimeout);
    }
    return phase_ == Phase::ended;
}

void ProcessRun::enforce() noexcept {
    const TimePoint now = clock_.now();
    if (phase_ == Phase::asked && now >= phaseDeadline_) {
        killAtOnce();
    } else if (phase_ != Phase::running) {
        return;
    } else if (cancel_.isCancelled()) {
        stop(RunEnd::cancelled);
    } else if (now - uncounted() >= totalDeadline_) {
        stop(RunEnd::timedOut);
    } else if (now - uncounted() >= idleDeadline_) {
        stop(RunEnd::idleTimedOut);
    }
}

void ProcessRun::stop(RunEnd reason) noexcept {
    if (!noteEnd()) {
        stopReason_ = reason;
        askToEnd();
    }
}

void ProcessRun::askToEnd() noexcept {
    if (phase_ == Phase::running) {
        child_.signal(SIGTERM);
        child_.signal(SIGCONT); // a stopped child could not hear it
        phase_ = Phase::asked;
        phaseDeadline_ = after(clock_.now(), invocation_.limits.terminationGrace);
        wasAsked_ = true;
    }
}

void ProcessRun::killAtOnce() noexcept {
    if (phase_ != Phase::ended) {
        child_.signal(SIGKILL);
        phase_ = Phase::killed;
        phaseDeadline_ = TimePoint::max();
        wasAsked_ = true;
    }
}

/// A run that cannot wait can only end.
void ProcessRun::giveUp(int error) noexcept {
    killAtOnce();
    lose(error, nullptr);
    child_.waitForEnd();
    noteEnd();
}

/// The output cannot be kept: nothing more is read, and the child is asked to end.
void ProcessRun::lose(int error, const char* reason) noexcept {
    if (!stopReason_) {
        stopReason_ = RunEnd::outputLost;
        lossError_ = error;
        try {
            lossReason_ =
                reason != nullptr ? String(reason) : String(std::generic_category().message(error));
        } catch (const std::bad_alloc&) {
            lossReason_ = nullptr;
        }
    }
    askToEnd();
    output_.close();
    errors_.close();
}

void ProcessRun::report(ProcessOutcome& outcome) const noexcept {
    outcome.exitStatus = child_.exitStatus();
    outcome.signal = child_.endingSignal();
    outcome.leftOutputOpen = output_.isOpen();
    outcome.leftErrorsOpen = errors_.isOpen();
    outcome.reason = lossReason_;
    outcome.error = lossError_;
    if (stopReason_) {
        outcome.end = *stopReason_;
    } else {
        outcome.end = outcome.exitStatus || outcome.signal ? RunEnd::ended : RunEnd::statusUnknown;
    }
}

} // namespace quen
