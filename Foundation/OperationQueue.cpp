#include "Foundation/OperationQueue.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
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

/// What the queue and its threads share, so that a thread may outlive the queue's last holder.
class OperationQueue::State : public std::enable_shared_from_this<State> {
public:
    explicit State(std::size_t width) : width_(width) {}

    std::size_t width() const noexcept { return width_; }

    void add(OperationPtr operation, const std::weak_ptr<OperationQueue>& queue) {
        Waiting added{std::move(operation), Ambient::current(), nullptr};
        std::unique_lock lock(mutex_);
        if (width_ > 0) {
            waiting_.push_back(std::move(added));
            startThreadWhenNeeded(queue);
            somethingToDo_.notify_one();
        } else if (const RunningHere* const runner = runningHere()) {
            added.runner = runner;
            waiting_.push_back(std::move(added));
        } else {
            const RunningHere here(this, queue);
            added.runner = &here;
            waiting_.push_back(std::move(added));
            runWaiting(lock, &here);
        }
    }

    void waitUntilFinished() {
        std::unique_lock lock(mutex_);
        nothingToDo_.wait(lock, [this] { return isIdle(); });
    }

    void cancelAll(bool forGood, const std::weak_ptr<OperationQueue>& queue) {
        // A handler may add to the queue, or wait for it.
        const RunningHere here(this, queue);
        std::unique_lock lock(mutex_);
        isCancelled_ = isCancelled_ || forGood;
        std::deque<Waiting> dropped = takeAllWaiting();
        const std::vector<OperationPtr> running = running_;
        lock.unlock();
        for (const OperationPtr& operation : running) {
            operation->cancel();
        }
        tellDropped(dropped);
        lock.lock();
        runWaiting(lock, &here);
        notifyWhenIdle();
    }

    void end() {
        std::vector<std::thread> threads;
        std::deque<Waiting> dropped;
        {
            const std::lock_guard lock(mutex_);
            dropped = takeAllWaiting();
            isEnding_ = true;
            threads.swap(threads_);
        }
        somethingToDo_.notify_all();
        tellDropped(dropped);
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
        AmbientPtr ambient; // of whoever added it
        const RunningHere* runner = nullptr;
        bool isDropped = false;
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
        for (Waiting next = takeWaiting(runner); next.operation != nullptr;
             next = takeWaiting(runner)) {
            running_.push_back(next.operation);
            const bool isToSkip = isCancelled_;
            lock.unlock();
            runOrSkip(next, isToSkip);
            lock.lock();
            running_.erase(std::find(running_.begin(), running_.end(), next.operation));
            notifyWhenIdle();
            // The operation may hold the last word on anything, this queue included: it goes
            // outside the lock.
            lock.unlock();
            next = {};
            lock.lock();
        }
    }

    static void runOrSkip(const Waiting& waiting, bool isToSkip) {
        const AmbientScope scope(waiting.ambient);
        if (!isToSkip) {
            waiting.operation->run();
        } else if (waiting.operation->markSkipped()) {
            waiting.operation->tellSkipped();
        }
    }

    /// Takes what has not started, for `tellDropped`. Whoever looks from now on finds it skipped.
    std::deque<Waiting> takeAllWaiting() {
        std::deque<Waiting> dropped;
        dropped.swap(waiting_);
        for (Waiting& each : dropped) {
            each.isDropped = each.operation->markSkipped();
        }
        dropping_ += dropped.size();
        return dropped;
    }

    /// Not under the lock: handlers and destructors may do anything.
    void tellDropped(std::deque<Waiting>& dropped) {
        const std::size_t count = dropped.size();
        for (const Waiting& each : dropped) {
            if (each.isDropped) {
                const AmbientScope scope(each.ambient);
                each.operation->tellSkipped();
            }
        }
        dropped.clear();
        const std::lock_guard lock(mutex_);
        dropping_ -= count;
        notifyWhenIdle();
    }

    Waiting takeWaiting(const RunningHere* runner) {
        const auto next = std::find_if(waiting_.begin(), waiting_.end(),
                                       [&](const Waiting& each) { return each.runner == runner; });
        if (next == waiting_.end()) {
            return {};
        }
        Waiting taken = std::move(*next);
        waiting_.erase(next);
        return taken;
    }

    bool isIdle() const noexcept { return waiting_.empty() && running_.empty() && dropping_ == 0; }

    void notifyWhenIdle() {
        if (isIdle()) {
            nothingToDo_.notify_all();
        }
    }

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
    state_->cancelAll(false, weak_from_this());
}

void OperationQueue::cancel() {
    state_->cancelAll(true, weak_from_this());
}

std::size_t OperationQueue::width() const noexcept {
    return state_->width();
}

} // namespace quen
