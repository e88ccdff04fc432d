#pragma once

#include "Host/Process/FileDescriptor.h"
#include "Tests/System/Sandbox.h"

#include <atomic>
#include <functional>
#include <thread>

namespace quen::test {

/// The moment in each commit to a sandbox's repository when the client has signed in and waits for
/// the server: `during` is called then, on a thread of this object, and the commit goes on after
/// it.
class CommitMoment {
public:
    CommitMoment(const Sandbox& sandbox, std::function<void()> during);
    CommitMoment(const CommitMoment&) = delete;
    CommitMoment& operator=(const CommitMoment&) = delete;
    ~CommitMoment();

    /// How many there were.
    int count() const { return count_; }

private:
    void watch();

    std::function<void()> during_;
    FileDescriptor reached_;
    FileDescriptor go_;
    FileDescriptor end_;
    std::atomic<int> count_ = 0;
    std::thread thread_;
};

} // namespace quen::test
