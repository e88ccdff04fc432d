#include "Host/Process/ChildStream.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>

namespace quen {

namespace {

/// What a pipe holds unless somebody changed it.
constexpr std::size_t usualPipeSize = 64 * 1024;

} // namespace

void ChildStream::widen(std::size_t size) noexcept {
    static_cast<void>(::fcntl(readEnd_.number(), F_SETPIPE_SZ, static_cast<int>(size)));
}

std::size_t ChildStream::capacity() const noexcept {
    const int size = ::fcntl(readEnd_.number(), F_GETPIPE_SZ);
    return size > 0 ? static_cast<std::size_t>(size) : usualPipeSize;
}

std::size_t ChildStream::read() {
    char* const room = data_->room(usualPipeSize);
    ssize_t count = 0;
    do {
        count = ::read(readEnd_.number(), room, data_->roomSize());
    } while (count < 0 && errno == EINTR);
    if (count < 0) {
        if (errno == EAGAIN) {
            return 0;
        }
        throw std::system_error(errno, std::generic_category());
    }
    if (count == 0) {
        close();
        return 0;
    }
    const auto size = static_cast<std::size_t>(count);
    if (keeps_) {
        data_->addFilled(size);
    }
    if (watcher_) {
        watcher_({room, size});
    }
    return size;
}

std::size_t ChildStream::readAll() {
    if (!isOpen()) {
        return 0;
    }
    const std::size_t most = capacity();
    std::size_t total = 0;
    std::size_t count = 0;
    do {
        count = read();
        total += count;
    } while (count > 0 && total < most);
    return total;
}

} // namespace quen
