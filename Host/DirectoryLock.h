#pragma once

#include "Host/Process/FileDescriptor.h"

#include <chrono>
#include <stop_token>
#include <string>

namespace quen {

/// A directory that one process of this library at a time works on: a lock that other programs do
/// not see, and that ends with the process.
class DirectoryLock {
public:
    DirectoryLock() = default;

    /// Waits for whoever holds it, no longer than `limit` and not after `stop` is requested. Holds
    /// nothing where it took longer, and where the file system has no such locks: a caller goes on
    /// and looks afterwards whether all went well.
    static DirectoryLock waitFor(const std::string& directory, std::chrono::milliseconds limit,
                                 const std::stop_token& stop);

    bool isHeld() const noexcept { return directory_.isOpen(); }

private:
    FileDescriptor directory_;
};

} // namespace quen
