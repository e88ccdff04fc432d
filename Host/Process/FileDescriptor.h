#pragma once

#include "Foundation/Export.h"

#include <optional>
#include <utility>

namespace quen {

/// The owner of one descriptor, or of none.
class QUEN_EXPORT FileDescriptor {
public:
    FileDescriptor() noexcept = default;
    /// Takes over `number`; a negative one stands for none.
    explicit FileDescriptor(int number) noexcept : number_(number) {}
    FileDescriptor(FileDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    ~FileDescriptor() { close(); }

    /// -1 for none.
    int number() const noexcept { return number_; }
    bool isOpen() const noexcept { return number_ >= 0; }
    /// Hands it over; the owner of none from then on.
    int release() noexcept { return std::exchange(number_, -1); }
    /// Leaves errno as it is, so that a failure can be reported after what it left was closed.
    void close() noexcept;

private:
    int number_ = -1;
};

/// The same file under a number above the standard three, closed on exec. In a host that has closed
/// some of its own 0, 1 and 2 the system hands just those out again, and the host's next line to
/// "standard output" would land in a pipe of ours. None, with errno, when that fails or
/// `descriptor` is none.
QUEN_EXPORT FileDescriptor aboveStandard(FileDescriptor descriptor) noexcept;

struct Pipe {
    FileDescriptor readEnd;  // does not block
    FileDescriptor writeEnd; // blocks, as a program expects of its output
};

/// Both ends above the standard three and closed on exec from the start. Nothing, with errno, on
/// failure.
QUEN_EXPORT std::optional<Pipe> makePipe() noexcept;

} // namespace quen
