#pragma once

#include "Foundation/OperationQueue.h"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <string>

namespace quen::tools::server {

/// Does work side by side on threads of its own. What goes into a lane waits for what is in the
/// same lane, in the order of arrival.
///
/// Threads: any.
class WorkLanes {
public:
    /// Must not throw.
    using Work = std::function<void()>;

    /// So much is done at once; the rest waits.
    explicit WorkLanes(std::size_t width) : workers_(OperationQueue::make(width)) {}
    WorkLanes(const WorkLanes&) = delete;
    WorkLanes& operator=(const WorkLanes&) = delete;
    ~WorkLanes() = default;

    /// In its turn in the lane, at once where the text is empty.
    void start(const std::string& lane, Work work);

    /// Waits until nothing is done or waiting; false when `bound` passes first.
    bool waitUntilIdle(std::chrono::steady_clock::time_point bound);

private:
    /// Hands work to a thread; counted as work in hand until it is done.
    void submit(Work work);
    void runFirstOf(const std::string& lane);
    void countDone();

    std::mutex mutex_;
    std::condition_variable idle_;
    /// What waits for its turn; a lane that is there is at work.
    std::map<std::string, std::deque<Work>> lanes_;
    std::size_t working_ = 0;
    OperationQueuePtr workers_;
};

} // namespace quen::tools::server
