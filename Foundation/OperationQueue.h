#pragma once

#include "Foundation/Export.h"
#include "Foundation/Operation.h"

#include <cstddef>
#include <memory>

namespace quen {

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
/// An operation runs in the ambient that was current where it was made; one that was made where
/// none was current runs in that of whoever added it.
///
/// Threads: every member may be called from any thread.
class QUEN_EXPORT OperationQueue : public std::enable_shared_from_this<OperationQueue> {
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
    /// Returns when nothing is queued or running and every completion handler has returned,
    /// operations added meanwhile included. Called from within an operation or a completion handler
    /// of this queue it would wait for itself, and returns at once.
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
