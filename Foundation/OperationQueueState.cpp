#include "Foundation/OperationQueueState.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace quen {

void OperationQueue::State::add(OperationPtr operation,
                                const std::weak_ptr<OperationQueue>& queue) {
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

void OperationQueue::State::waitUntilFinished() {
    std::unique_lock lock(mutex_);
    nothingToDo_.wait(lock, [this] { return isIdle(); });
}

void OperationQueue::State::cancelAll(bool forGood, const std::weak_ptr<OperationQueue>& queue) {
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

void OperationQueue::State::end() {
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

void OperationQueue::State::startThreadWhenNeeded(const std::weak_ptr<OperationQueue>& queue) {
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

void OperationQueue::State::work(const std::weak_ptr<OperationQueue>& queue) {
    const RunningHere here(this, queue);
    std::unique_lock lock(mutex_);
    while (!isEnding_) {
        runWaiting(lock, nullptr);
        ++idleThreads_;
        somethingToDo_.wait(lock, [this] { return isEnding_ || !waiting_.empty(); });
        --idleThreads_;
    }
}

void OperationQueue::State::runWaiting(std::unique_lock<std::mutex>& lock,
                                       const RunningHere* runner) {
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

void OperationQueue::State::runOrSkip(const Waiting& waiting, bool isToSkip) {
    const AmbientScope scope(waiting.ambient);
    if (!isToSkip) {
        waiting.operation->run();
    } else if (waiting.operation->markSkipped()) {
        waiting.operation->tellSkipped();
    }
}

std::deque<OperationQueue::State::Waiting> OperationQueue::State::takeAllWaiting() {
    std::deque<Waiting> dropped;
    dropped.swap(waiting_);
    for (Waiting& each : dropped) {
        each.isDropped = each.operation->markSkipped();
    }
    dropping_ += dropped.size();
    return dropped;
}

void OperationQueue::State::tellDropped(std::deque<Waiting>& dropped) {
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

OperationQueue::State::Waiting OperationQueue::State::takeWaiting(const RunningHere* runner) {
    const auto next = std::find_if(waiting_.begin(), waiting_.end(),
                                   [&](const Waiting& each) { return each.runner == runner; });
    if (next == waiting_.end()) {
        return {};
    }
    Waiting taken = std::move(*next);
    waiting_.erase(next);
    return taken;
}

void OperationQueue::State::notifyWhenIdle() {
    if (isIdle()) {
        nothingToDo_.notify_all();
    }
}

} // namespace quen
