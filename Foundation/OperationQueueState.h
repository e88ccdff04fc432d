#pragma once

#include "Foundation/OperationQueue.h"
#include "Foundation/RunningHere.h"

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace quen {

/// What the queue and its threads share, so that a thread may outlive the queue's last holder.
class __attribute__((visibility("hidden"))) OperationQueue::State
    : public std::enable_shared_from_this<State> {
public:
    explicit State(std::size_t width) : width_(width) {}

    std::size_t width() const noexcept { return width_; }

    void add(OperationPtr operation, const std::weak_ptr<OperationQueue>& queue);
    void waitUntilFinished();
    /// What has not started is dropped; with `forGood` what comes later, too.
    void cancelAll(bool forGood, const std::weak_ptr<OperationQueue>& queue);
    /// For the queue's destructor: waits for its threads.
    void end();

    /// Null unless an operation of this queue is running on this thread.
    const RunningHere* runningHere() const noexcept { return RunningHere::of(this); }

private:
    /// Who runs it: any of the queue's threads (null), or the caller within whose operation it was
    /// added. Callers of a queue of width 0 never run each other's operations, or one of them could
    /// return before its own has run.
    struct Waiting {
        OperationPtr operation;
        AmbientPtr ambient; // of whoever added it
        const RunningHere* runner = nullptr;
        bool isDropped = false;
    };

    void startThreadWhenNeeded(const std::weak_ptr<OperationQueue>& queue);
    void work(const std::weak_ptr<OperationQueue>& queue);
    void runWaiting(std::unique_lock<std::mutex>& lock, const RunningHere* runner);
    static void runOrSkip(const Waiting& waiting, bool isToSkip);
    Waiting takeWaiting(const RunningHere* runner);

    /// Takes what has not started, for `tellDropped`. Whoever looks from now on finds it skipped.
    std::deque<Waiting> takeAllWaiting();

    /// Not under the lock: handlers and destructors may do anything.
    void tellDropped(std::deque<Waiting>& dropped);

    bool isIdle() const noexcept { return waiting_.empty() && running_.empty() && dropping_ == 0; }
    void notifyWhenIdle();

    const std::size_t width_;
    std::mutex mutex_;
    std::condition_variable somethingToDo_;
    std::condition_variable nothingToDo_;
    std::deque<Waiting> waiting_;
    std::vector<OperationPtr> running_;
    std::size_t dropping_ = 0; // dropped, and their handlers not all told
    std::vector<std::thread> threads_;
    std::size_t idleThreads_ = 0;
    bool isCancelled_ = false;
    bool isEnding_ = false;
};

} // namespace quen
