#include "Host/Process/CancelWatch.h"

#include <cerrno>
#include <sys/eventfd.h>
#include <utility>

namespace quen {

CancelWatch::CancelWatch(std::stop_token stop) noexcept : stop_(std::move(stop)) {
    if (!stop_.stop_possible()) {
        return;
    }
    wake_ = aboveStandard(FileDescriptor(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)));
    if (!wake_.isOpen()) {
        error_ = errno;
        return;
    }
    callback_.emplace(stop_, Wake{*this});
}

/// It fails only when the counter is full, and then the descriptor is readable anyway.
void CancelWatch::Wake::operator()() const noexcept {
    static_cast<void>(::eventfd_write(watch.wake_.number(), 1));
}

} // namespace quen
