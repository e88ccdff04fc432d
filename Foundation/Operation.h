#pragma once

#include "Foundation/Ambient.h"
#include "Foundation/Export.h"

#include <atomic>
#include <functional>
#include <memory>
#include <stop_token>

namespace quen {

/// A unit of work, done once: by an OperationQueue or by whoever calls `run`.
///
/// It keeps the ambient that was current when it was made, and runs in it. One that was made where
/// none was current runs in that of whoever added it to a queue or called `run`.
class QUEN_EXPORT Operation {
public:
    /// Called with the operation that has ended.
    using Completion = std::function<void(Operation& operation)>;

    Operation();
    Operation(const Operation&) = delete;
    Operation& operator=(const Operation&) = delete;
    virtual ~Operation();

    /// Does the work on the calling thread and tells the completion handler. One that is cancelled
    /// by then is skipped instead. Only the first call counts: it returns false where the operation
    /// had been run or skipped before. What `main` throws is swallowed.
    bool run() noexcept;

    /// The work itself, for subclasses to implement; `run` calls it. Must not throw.
    virtual void main() = 0;

    /// Asks the operation to end early. One that has not started is skipped when its turn comes;
    /// whether a running one heeds it is the class's own matter. From any thread, any number of
    /// times.
    virtual void cancel() { stop_.request_stop(); }
    bool isCancelled() const noexcept { return stop_.stop_requested() || wasSkipped(); }
    /// Tells of `cancel`, for work that waits.
    std::stop_token stopToken() const noexcept { return stop_.get_token(); }

    /// Whether it has ended without a call of `main`: it was cancelled before its turn came, or its
    /// queue dropped it. It counts as cancelled then.
    bool wasSkipped() const noexcept { return wasSkipped_.load(); }

    /// Whether `main` has returned, or the operation was skipped.
    bool hasEnded() const noexcept { return hasEnded_.load(); }

    /// Called once, when the operation has ended: run, cancelled before it ran, or dropped by its
    /// queue. On the thread that ran or dropped it, in the operation's ambient. What it throws is
    /// swallowed. To be set before the operation is run or added; an operation that is destroyed
    /// without having been run or dropped tells nobody.
    void setCompletion(Completion completion);

private:
    friend class OperationQueue;

    bool begin() noexcept { return !hasBegun_.exchange(true); }
    /// Makes it count as skipped, and calls nobody; false where it has begun. `tellSkipped` is to
    /// follow.
    bool markSkipped() noexcept;
    void tellSkipped() noexcept;
    void tellCompletion() noexcept;
    AmbientPtr ambientToRunIn() const noexcept;

    const AmbientPtr ambient_;
    std::stop_source stop_;
    std::atomic<bool> hasBegun_ = false;
    std::atomic<bool> wasSkipped_ = false;
    std::atomic<bool> hasEnded_ = false;
    Completion completion_;
};

using OperationPtr = std::shared_ptr<Operation>;

} // namespace quen
