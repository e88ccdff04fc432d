#include "Tools/Terminal/StartedPrograms.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <unistd.h>

namespace quen::tools {

namespace {

/// One that has a process group of its own is killed with its group.
void killWithGroup(pid_t child) noexcept {
    const pid_t group = getpgid(child);
    kill(group > 0 && group != getpgrp() ? -group : child, SIGKILL);
}

} // namespace

void killStartedPrograms() noexcept {
    try {
        std::error_code error;
        // A child belongs to the thread that started it.
        for (const auto& thread : std::filesystem::directory_iterator("/proc/self/task", error)) {
            std::ifstream children(thread.path() / "children");
            for (pid_t child = 0; children >> child;) {
                killWithGroup(child);
            }
        }
    } catch (...) { // NOLINT(bugprone-empty-catch): the program is about to end
    }
}

} // namespace quen::tools
