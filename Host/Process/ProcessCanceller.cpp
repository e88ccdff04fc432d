#include "Host/Process/ProcessCanceller.h"

#include <cerrno>
#include <cstdint>
#include <sys/eventfd.h>
#include <thread>
#include <unistd.h>

namespace quen {

void ProcessCanceller::cancel() noexcept {
    const int error = errno; // a signal handler must leave it as it was
    callers_.fetch_add(1);
    isCancelled_.store(true);
    const int wake = wakeNumber_.load();
    if (wake >= 0) {
        const std::uint64_t one = 1;
        // It fails only when the counter is full, and then the descriptor is readable anyway.
        static_cast<void>(!::write(wake, &one, sizeof one));
    }
    callers_.fetch_sub(1);
    errno = error;
}

CancelWatch::CancelWatch(ProcessCanceller& canceller) noexcept : canceller_(canceller) {
    const std::lock_guard lock(canceller_.mutex_);
    if (canceller_.watches_ == 0) {
        canceller_.wake_ = aboveStandard(FileDescriptor(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)));
        if (!canceller_.wake_.isOpen()) {
            error_ = errno;
            return;
        }
        canceller_.wakeNumber_.store(canceller_.wake_.number());
    }
    number_ = canceller_.wake_.number();
    ++canceller_.watches_;
}

CancelWatch::~CancelWatch() {
    const std::lock_guard lock(canceller_.mutex_);
    if (number_ < 0 || --canceller_.watches_ > 0) {
        return;
    }
    canceller_.wakeNumber_.store(-1);
    // A caller that read the number before is about to write; the number must not be another file's
    // by then. It takes no lock and waits for nothing, so this is a matter of one system call.
    while (canceller_.callers_.load() > 0) {
        std::this_thread::yield();
    }
    canceller_.wake_.close();
}

} // namespace quen
