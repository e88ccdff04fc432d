#pragma once

#include "Foundation/Export.h"

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace quen {

/// Bytes that grow at their end. Growing a large buffer moves its pages and does not copy them, so
/// that holding a report of 100 MB never needs twice that.
///
/// Threads: one writer; shared as DataPtr it is read only.
class QUEN_EXPORT Data {
public:
    Data() noexcept = default;
    explicit Data(std::string_view bytes) { append(bytes); }

    std::string_view bytes() const noexcept { return {buffer_.get(), size_}; }
    std::size_t size() const noexcept { return size_; }
    bool isEmpty() const noexcept { return size_ == 0; }

    /// Throws std::bad_alloc when memory is at its end; the bytes so far stay.
    void append(std::string_view bytes);

    /// At least `count` bytes of room behind the end, to be filled and then counted in with
    /// `addFilled`. Throws std::bad_alloc like `append`.
    char* room(std::size_t count);
    std::size_t roomSize() const noexcept { return capacity_ - size_; }
    void addFilled(std::size_t count) noexcept { size_ += count; }

    /// A holder's word that it is about to drop the bytes and that their memory may be reclaimed at
    /// once. The buffer is counted, so it lives on while anybody else holds it.
    void marl_shouldCollect() const noexcept { shouldCollect_.store(true); }
    bool shouldCollect() const noexcept { return shouldCollect_.load(); }

private:
    struct Free {
        void operator()(char* bytes) const noexcept { std::free(bytes); }
    };

    std::unique_ptr<char, Free> buffer_;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
    mutable std::atomic<bool> shouldCollect_ = false;
};

using DataPtr = std::shared_ptr<const Data>;

} // namespace quen
