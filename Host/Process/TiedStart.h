#pragma once

#include <sys/types.h>

namespace quen {

/// What a child is started with that ends when the host does.
struct TiedStart {
    const char* path = nullptr;
    char* const* arguments = nullptr;
    char* const* environment = nullptr;
    int directory = -1; // to start in; -1 for the host's own
    int input = -1;
    int output = -1;
    int errors = -1;
    bool ownSession = true;
};

/// Starts a child as posix_spawn does, and has the system send it SIGTERM when the calling thread
/// ends: posix_spawn cannot ask for that. The thread must not end before the child, but with the
/// whole process. The child's number, or -1 with errno.
///
/// Costs no more than posix_spawn: the child shares the host's memory until the program starts.
pid_t startTied(const TiedStart& start) noexcept;

} // namespace quen
