#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <utility>

namespace quen {

/// A nullable, reference-counted holder of one value, one pointer wide.
///
/// What `std::shared_ptr` costs in width (two pointers) would double the size of a `Value`; results
/// of a million records are why this exists. Copying shares the value, the last holder destroys it.
///
/// Threads: the count is atomic, the value is not protected. Share a value between threads only
/// while nobody changes it.
template <typename T> class Shared {
public:
    Shared() noexcept = default;
    Shared(const Shared& other) noexcept : box_(other.box_) {
        if (box_ != nullptr) {
            box_->references.fetch_add(1, std::memory_order_relaxed);
        }
    }
    Shared(Shared&& other) noexcept : box_(std::exchange(other.box_, nullptr)) {}
    Shared& operator=(Shared other) noexcept {
        std::swap(box_, other.box_);
        return *this;
    }
    ~Shared() {
        if (box_ != nullptr && box_->references.fetch_sub(1, std::memory_order_acq_rel) == 1) {
            const std::unique_ptr<Box> last(box_);
        }
    }

    template <typename... Arguments> static Shared make(Arguments&&... arguments) {
        Shared shared;
        shared.box_ = std::make_unique<Box>(std::forward<Arguments>(arguments)...).release();
        return shared;
    }

    explicit operator bool() const noexcept { return box_ != nullptr; }
    const T& operator*() const noexcept { return box_->value; }
    const T* operator->() const noexcept { return &box_->value; }
    const T* get() const noexcept { return box_ == nullptr ? nullptr : &box_->value; }

    /// The value for writing: first made when this is null, first copied when somebody else holds
    /// it too.
    T& own() {
        if (box_ == nullptr) {
            *this = make();
        } else if (box_->references.load(std::memory_order_acquire) != 1) {
            *this = make(box_->value);
        }
        return box_->value;
    }

private:
    struct Box {
        template <typename... Arguments> explicit Box(Arguments&&... arguments)
            : value(std::forward<Arguments>(arguments)...) {}
        std::atomic<std::uint32_t> references{1};
        T value;
    };

    Box* box_ = nullptr;
};

} // namespace quen
