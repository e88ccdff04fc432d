#include "Host/DirectoryLock.h"

#include <cerrno>
#include <condition_variable>
#include <fcntl.h>
#include <mutex>
#include <sys/file.h>

namespace quen {

namespace {

/// The system tells nobody when a lock becomes free, but to one that waits in a call that nothing
/// ends.
constexpr std::chrono::milliseconds betweenTries{10};

bool isStoppedWithin(std::chrono::milliseconds time, const std::stop_token& stop) {
    std::mutex mutex;
    std::condition_variable_any stopped;
    std::unique_lock lock(mutex);
    stopped.wait_for(lock, stop, time, [] { return false; });
    return stop.stop_requested();
}

} // namespace

DirectoryLock DirectoryLock::waitFor(const std::string& directory, std::chrono::milliseconds limit,
                                     const std::stop_token& stop) {
    DirectoryLock lock;
    FileDescriptor opened(open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const auto end = std::chrono::steady_clock::now() + limit;
    while (opened.isOpen()) {
        if (flock(opened.number(), LOCK_EX | LOCK_NB) == 0) {
            lock.directory_ = std::move(opened);
            return lock;
        }
        if (errno != EWOULDBLOCK || std::chrono::steady_clock::now() > end ||
            isStoppedWithin(betweenTries, stop)) {
            return lock;
        }
    }
    return lock;
}

} // namespace quen
