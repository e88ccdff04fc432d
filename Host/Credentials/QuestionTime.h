#pragma once

#include <chrono>
#include <memory>
#include <mutex>

namespace quen {

/// How long questions of a run have been open so far: time in which the run waits for a person and
/// is not to be ended for that.
///
/// Threads: any.
class QuestionTime {
public:
    using Clock = std::chrono::steady_clock;

    /// While one lives, the time counts; any number at once count once.
    class Open {
    public:
        explicit Open(QuestionTime& time) : time_(time) { time_.begin(); }
        Open(const Open&) = delete;
        Open& operator=(const Open&) = delete;
        ~Open() { time_.end(); }

    private:
        QuestionTime& time_;
    };

    std::chrono::nanoseconds soFar() const {
        const std::lock_guard lock(mutex_);
        return open_ > 0 ? past_ + (Clock::now() - begin_) : past_;
    }

private:
    void begin() {
        const std::lock_guard lock(mutex_);
        if (open_++ == 0) {
            begin_ = Clock::now();
        }
    }
    void end() {
        const std::lock_guard lock(mutex_);
        if (--open_ == 0) {
            past_ += Clock::now() - begin_;
        }
    }

    mutable std::mutex mutex_;
    int open_ = 0;
    Clock::time_point begin_;
    std::chrono::nanoseconds past_{0};
};

using QuestionTimePtr = std::shared_ptr<QuestionTime>;

} // namespace quen
