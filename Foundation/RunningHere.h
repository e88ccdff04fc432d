#pragma once

#include "Foundation/OperationQueue.h"

#include <memory>

namespace quen {

/// One on each thread for each queue whose operations run there, the innermost in front: an
/// operation of one queue may add to another one of width 0, whose operations then run within it.
/// Private to `OperationQueue`.
struct RunningHere {
    RunningHere(const void* state, std::weak_ptr<OperationQueue> queue) noexcept;
    RunningHere(const RunningHere&) = delete;
    RunningHere& operator=(const RunningHere&) = delete;
    ~RunningHere();

    /// Of this thread; null where no queue's operation runs here, or none of that queue.
    static const RunningHere* innermost() noexcept;
    static const RunningHere* of(const void* state) noexcept;

    const void* const state;
    const std::weak_ptr<OperationQueue> queue;
    const RunningHere* const outer;
};

} // namespace quen
