#pragma once

#include "Host/Process/FileDescriptor.h"

#include <atomic>
#include <csignal>
#include <functional>
#include <thread>

namespace quen::tools {

/// As long as it lives, an interrupt (SIGINT, SIGTERM or SIGHUP) does not end the program but calls
/// a function, on a thread of its own. A second one ends the program at once, with the status of an
/// interrupt: whoever asks twice does not want to wait.
///
/// A signal that the program was started to ignore, as `nohup` does, stays ignored.
///
/// Threads: to be made and destroyed by the program's first thread while it has no others, because
/// those would still take the signals themselves. Threads started meanwhile do not.
class InterruptWatch {
public:
    /// Throws std::system_error where the system has no descriptor or thread left.
    explicit InterruptWatch(std::function<void()> onInterrupt);
    InterruptWatch(const InterruptWatch&) = delete;
    InterruptWatch& operator=(const InterruptWatch&) = delete;
    ~InterruptWatch();

    bool wasInterrupted() const noexcept { return interrupts_.load() > 0; }

private:
    void watch();
    void takeSignal();

    std::function<void()> onInterrupt_;
    std::atomic<int> interrupts_ = 0;
    sigset_t formerMask_{};
    FileDescriptor signals_;
    FileDescriptor end_;
    std::thread thread_;
};

} // namespace quen::tools
