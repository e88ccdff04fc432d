#pragma once

#include "Host/Process/FileDescriptor.h"

#include <optional>
#include <stop_token>

namespace quen {

/// A run's view of its stop token, as something that can be polled, for as long as the run lasts.
class CancelWatch {
public:
    explicit CancelWatch(std::stop_token stop) noexcept;
    CancelWatch(const CancelWatch&) = delete;
    CancelWatch& operator=(const CancelWatch&) = delete;

    /// 0, or why the system gave no descriptor.
    int error() const noexcept { return error_; }
    /// Readable from the stop request on; -1 where none can come.
    int number() const noexcept { return wake_.number(); }
    bool isCancelled() const noexcept { return stop_.stop_requested(); }

private:
    struct Wake {
        const CancelWatch& watch;
        void operator()() const noexcept;
    };

    const std::stop_token stop_;
    FileDescriptor wake_;
    int error_ = 0;
    /// Last, so that it goes first: its destructor waits for a call that is under way, which writes
    /// to the descriptor.
    std::optional<std::stop_callback<Wake>> callback_;
};

} // namespace quen
