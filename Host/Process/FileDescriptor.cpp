#include "Host/Process/FileDescriptor.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace quen {

void FileDescriptor::close() noexcept {
    if (isOpen()) {
        const int error = errno;
        ::close(std::exchange(number_, -1)); // not repeated after EINTR: it is closed all the same
        errno = error;
    }
}

FileDescriptor aboveStandard(FileDescriptor descriptor) noexcept {
    if (!descriptor.isOpen() || descriptor.number() > STDERR_FILENO) {
        return descriptor;
    }
    return FileDescriptor(::fcntl(descriptor.number(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

std::optional<Pipe> makePipe() noexcept {
    std::array<int, 2> ends = {-1, -1};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        return std::nullopt;
    }
    FileDescriptor low(ends[0]);
    FileDescriptor high(ends[1]);
    Pipe pipe{aboveStandard(std::move(low)), {}};
    if (pipe.readEnd.isOpen()) {
        pipe.writeEnd = aboveStandard(std::move(high));
    }
    if (!pipe.writeEnd.isOpen() || ::fcntl(pipe.readEnd.number(), F_SETFL, O_NONBLOCK) != 0) {
        return std::nullopt;
    }
    return pipe;
}

} // namespace quen
