#include "Foundation/OperationQueue.h"

#include "Foundation/OperationQueueState.h"

#include <utility>

namespace quen {

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
    const RunningHere* const here = RunningHere::innermost();
    return here == nullptr ? nullptr : here->queue.lock();
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
