#pragma once

#include <chrono>

namespace quen {

/// What a run reads the time from.
class RunClock {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    RunClock() = default;
    RunClock(const RunClock&) = delete;
    RunClock& operator=(const RunClock&) = delete;
    virtual ~RunClock() = default;

    virtual TimePoint now() const noexcept = 0;

    /// The system's steady clock.
    static const RunClock& steady() noexcept;
};

} // namespace quen
