#pragma once

#include <atomic>
#include <cstddef>
#include <memory>

namespace quen {

/// A unit of work for an OperationQueue.
class Operation {
public:
    Operation() = default;
    Operation(const Operation&) = delete;
    Operation& operator=(const Operation&) = delete;
    virtual ~Operation() = default;

    /// The work. Called once, by whoever runs the operation, on that thread. Must not throw; what
    /// escapes all the same is swallowed by the queue, and the operation counts as finished.
    virtual void main() = 0;

    /// Asks the operation to end early. A queue does not start a cancelled operation; whether a
    /// running one heeds it is the class's own matter. From any thread, any number of times.
    virtual void cancel() { isCancelled_.store(true); }
    bool isCancelled() const noexcept { return isCancelled_.load(); }

    /// Whether a queue has let it go without calling `main`: it was cancelled before its turn came,
    /// or dropped with its queue. It counts as cancelled then.
    bool wasSkipped() const noexcept { return wasSkipped_.load(); }

private:
    friend class OperationQueue;
    void skip() noexcept;

    std::atomic<bool> isCancelled_ = false;
    std::atomic<bool> wasSkipped_ = false;
};

using OperationPtr = std::shared_ptr<Operation>;

/// Runs operations in the order in which they were added, at most `width` at a time, on threads of
/// its own that are started when needed.
///
/// A queue of width 0 has no threads: `addOperation` runs the operation before it returns, except
/// that one added from within a running operation of the same queue runs right after that.
///
/// A queue keeps an operation until it has ended. Letting go of the last holder of a queue drops
/// what has not started and waits for what is running (unless the holder is one of its own
/// operations, which is then the last to run).
///
/// Threads: every member may be called from any thread.
class OperationQueue : public std::enable_shared_from_this<OperationQueue> {
public:
    static constexpr std::size_t defaultWidth = 1;

    static std::shared_ptr<OperationQueue> make(std::size_t width = defaultWidth);
    OperationQueue(const OperationQueue&) = delete;
    OperationQueue& operator=(const OperationQueue&) = delete;
    ~OperationQueue();

    /// The queue whose operation is running on this thread; null outside any.
    static std::shared_ptr<OperationQueue> currentQueue();

    /// A null operation is ignored. Throws std::system_error, and drops the operation, when the
    /// queue has no thread and none can be started.
    void addOperation(OperationPtr operation);
    /// Returns when nothing is queued or running, operations added meanwhile included. Called from
    /// within an operation of this queue it would wait for itself, and returns at once.
    void waitUntilAllOperationsAreFinished();
    /// Cancels what is running and drops what has not started.
    void cancelAllOperations();
    /// The same, for good: what is added from then on is skipped.
    void cancel();

    std::size_t width() const noexcept;

private:
    class State;
    explicit OperationQueue(std::size_t width);

    std::shared_ptr<State> state_;
};

using OperationQueuePtr = std::shared_ptr<OperationQueue>;

} // namespace quen
