#pragma once

#include "Host/Process/FileDescriptor.h"

#include <atomic>
#include <mutex>

namespace quen {

/// Ends runs early. Once cancelled it stays so: a run that is going on is ended, and one started
/// later with the same canceller ends before it starts its program.
///
/// It holds a descriptor only while a run is going on, so that any number may be kept.
///
/// Lifetime: must outlive the runs it was given to and every call of `cancel`.
/// Threads: every member may be called from any thread; one canceller may serve several runs, also
/// at once.
class ProcessCanceller {
public:
    ProcessCanceller() noexcept = default;
    ProcessCanceller(const ProcessCanceller&) = delete;
    ProcessCanceller& operator=(const ProcessCanceller&) = delete;

    /// Before, during or after a run, any number of times. Does not wait for the run to end. May be
    /// called from a signal handler.
    void cancel() noexcept;
    bool isCancelled() const noexcept { return isCancelled_.load(); }

private:
    friend class CancelWatch;

    std::atomic<bool> isCancelled_ = false;
    std::atomic<int> wakeNumber_ = -1; // of `wake_`; -1 while no run is going on
    std::atomic<int> callers_ = 0;     // calls of `cancel` that may hold `wakeNumber_`

    std::mutex mutex_; // guards what follows; `cancel` never takes it
    FileDescriptor wake_;
    int watches_ = 0;
};

/// A run's view of its canceller, for as long as the run lasts.
class CancelWatch {
public:
    explicit CancelWatch(ProcessCanceller& canceller) noexcept;
    CancelWatch(const CancelWatch&) = delete;
    CancelWatch& operator=(const CancelWatch&) = delete;
    ~CancelWatch();

    /// 0, or why the system gave no descriptor.
    int error() const noexcept { return error_; }
    /// Readable from `cancel` on. After that the flag tells, so it need not be polled any more.
    int number() const noexcept { return number_; }
    bool isCancelled() const noexcept { return canceller_.isCancelled(); }

private:
    ProcessCanceller& canceller_;
    int number_ = -1;
    int error_ = 0;
};

} // namespace quen
