#include "Foundation/OperationQueue.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace quen {

namespace {

/// One on each thread for each queue whose operations run there, the innermost in front: an
/// operation of one queue may add to another one of width 0, whose operations then run within it.
struct RunningHere {
    RunningHere(const void* state, std::weak_ptr<OperationQueue> queue) noexcept;
    RunningHere(const RunningHere&) = delete;
    RunningHere& operator=(const RunningHere&) = delete;
    ~RunningHere();

    const void* const state;
    const std::weak_ptr<OperationQueue> queue;
    const RunningHere* const outer;
};

thread_local const RunningHere* innermost; // NOLINT(*-avoid-non-const-global-variables)

RunningHere::RunningHere(const void* ofState, std::weak_ptr<OperationQueue> ofQueue) noexcept
    : state(ofState), queue(std::move(ofQueue)), outer(innermost) {
    innermost = this;
}

RunningHere::~RunningHere() {
    innermost = outer;
}

} // namespace

void Operation::skip() noexcept {
    isCancelled_.store(true);
    wasSkipped_.store(true);
}

namespace {

void runGuarded(Operation& operation) noexcept {
    try {
        operation.main();
    } catch (const std::exception&) {
        // An operation that throws has broken its contract; the host must live on all the same.
    } catch (...) { // NOLINT(bugprone-empty-catch)
    }
}

} // namespace

/// What the queue and its threads share, so that a thread may outlive the queue's last holder.
class OperationQueue::State : public std::enable_shared_from_this<State> {
public:
    explicit State(std::size_t width) : width_(width) {}

    std::size_t width() const noexcept { return width_; }

    void add(OperationPtr operation, const std::weak_ptr<OperationQueue>& queue) {
        std::unique_lock lock(mutex_);
        if (width_ > 0) {
            waiting_.push_back({std::move(operation), nullptr});
            startThreadWhenNeeded(queue);
            somethingToDo_.notify_one();
        } else if (const RunningHere* const runner = runningHere()) {
            waiting_.push_back({std::move(operation), runner});
        } else {
            const RunningHere here(this, queue);
            waiting_.push_back({std::move(operation), &here});
            runWaiting(lock, &here);
        }
    }

    void waitUntilFinished() {
        std::unique_lock lock(mutex_);
        nothingToDo_.wait(lock, [this] { return waiting_.empty() && running_.empty(); });
    }

    void cancelAll(bool forGood) {
        std::deque<Waiting> dropped;
        std::vector<OperationPtr> running;
        {
            const std::lock_guard lock(mutex_);
            isCancelled_ = isCancelled_ || forGood;
            dropWaiting(dropped);
            running = running_;
            notifyWhenIdle();
        }
        for (const OperationPtr& operation : running) {
            operation->cancel();
        }
    }

    void end() {
        std::vector<std::thread> threads;
        std::deque<Waiting> dropped;
        {
            const std::lock_guard lock(mutex_);
            dropWaiting(dropped);
            isEnding_ = true;
            threads.swap(threads_);
        }
        somethingToDo_.notify_all();
        dropped.clear();
        for (std::thread& thread : threads) {
            if (thread.get_id() == std::this_thread::get_id()) {
                thread.detach();
            } else {
                thread.join();
            }
        }
    }

    /// Null unless an operation of this queue is running on this thread.
    const RunningHere* runningHere() const noexcept {
        const RunningHere* here = innermost;
        while (here != nullptr && here->state != this) {
            here = here->outer;
        }
        return here;
    }

private:
    /// Who runs it: any of the queue's threads (null), or the caller within whose operation it was
    /// added. Callers of a queue of width 0 never run each other's operations, or one of them could
    /// return before its own has run.
    struct Waiting {
        OperationPtr operation;
        const RunningHere* runner;
    };

    void startThreadWhenNeeded(const std::weak_ptr<OperationQueue>& queue) {
        if (idleThreads_ >= waiting_.size() || threads_.size() >= width_) {
            return;
        }
        try {
            threads_.emplace_back([state = shared_from_this(), queue] { state->work(queue); });
        } catch (const std::system_error&) {
            if (threads_.empty()) {
                waiting_.pop_back();
                throw;
            }
        }
    }

    void work(const std::weak_ptr<OperationQueue>& queue) {
        const RunningHere here(this, queue);
        std::unique_lock lock(mutex_);
        while (!isEnding_) {
            runWaiting(lock, nullptr);
            ++idleThreads_;
            somethingToDo_.wait(lock, [this] { return isEnding_ || !waiting_.empty(); });
            --idleThreads_;
        }
    }

    void runWaiting(std::unique_lock<std::mutex>& lock, const RunningHere* runner) {
        while (OperationPtr operation = takeWaiting(runner)) {
            running_.push_back(operation);
            const bool isSkipped = isCancelled_ || operation->isCancelled();
            lock.unlock();
            if (isSkipped) {
                operation->skip();
            } else {
                runGuarded(*operation);
            }
            lock.lock();
            running_.erase(std::find(running_.begin(), running_.end(), operation));
            notifyWhenIdle();
            // The operation may hold the last word on anything, this queue included: it goes
            // outside the lock.
            lock.unlock();
            operation.reset();
            lock.lock();
        }
    }

    /// They are let go outside the lock, like all operations. Whoever waits for the queue finds
    /// them skipped.
    void dropWaiting(std::deque<Waiting>& dropped) {
        dropped.swap(waiting_);
        for (const Waiting& each : dropped) {
            each.operation->skip();
        }
    }

    OperationPtr takeWaiting(const RunningHere* runner) {
        const auto next = std::find_if(waiting_.begin(), waiting_.end(),
                                       [&](const Waiting& each) { return each.runner == runner; });
        if (next == waiting_.end()) {
            return nullptr;
        }
        OperationPtr operation = std::move(next->operation);
        waiting_.erase(next);
        return operation;
    }

    void notifyWhenIdle() {
        if (waiting_.empty() && running_.empty()) {
            nothingToDo_.notify_all();
        }
    }

    const std::size_t width_;
    std::mutex mutex_;
    std::condition_variable somethingToDo_;
    std::condition_variable nothingToDo_;
    std::deque<Waiting> waiting_;
    std::vector<OperationPtr> running_;
    std::vector<std::thread> threads_;
    std::size_t idleThreads_ = 0;
    bool isCancelled_ = false;
    bool isEnding_ = false;
};

OperationQueue::OperationQueue(std::size_t width) : state_(std::make_shared<State>(width)) {}

OperationQueuePtr OperationQueue::make(std::size_t width) {
    struct Maker : OperationQueue {
        explicit Maker(std::size_t width) : OperationQueue(width) {}
    };
    return std::make_shared<Maker>(width);
}

OperationQueue::~OperationQueue() {
    state_->end();
}

OperationQueuePtr OperationQueue::currentQueue() {
    return innermost == nullptr ? nullptr : innermost->queue.lock();
}

void OperationQueue::addOperation(OperationPtr operation) {
    if (operation != nullptr) {
        // The operation may let go of this queue before it ends.
        const std::shared_ptr<State> state = state_;
        state->add(std::move(operation), weak_from_this());
    }
}

void OperationQueue::waitUntilAllOperationsAreFinished() {
    if (state_->runningHere() == nullptr) {
        state_->waitUntilFinished();
    }
}

void OperationQueue::cancelAllOperations() {
    state_->cancelAll(false);
}

void OperationQueue::cancel() {
    state_->cancelAll(true);
}

std::size_t OperationQueue::width() const noexcept {
    return state_->width();
}

} // namespace quen
