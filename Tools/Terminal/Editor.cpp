#include "Tools/Terminal/Editor.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <spawn.h>
#include <string_view>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace quen::tools {

namespace {

/// As long as it lives, the terminal's keys that end programs do not end this one.
class KeysIgnored {
public:
    KeysIgnored()
        : interrupt_(std::signal(SIGINT, SIG_IGN)), quit_(std::signal(SIGQUIT, SIG_IGN)) {}
    KeysIgnored(const KeysIgnored&) = delete;
    KeysIgnored& operator=(const KeysIgnored&) = delete;
    ~KeysIgnored() {
        std::signal(SIGINT, interrupt_);
        std::signal(SIGQUIT, quit_);
    }

private:
    void (*interrupt_)(int);
    void (*quit_)(int);
};

/// What this program ignores, an editor must not.
class DefaultSignals {
public:
    DefaultSignals() {
        sigset_t signals;
        sigemptyset(&signals);
        for (const int number : {SIGINT, SIGQUIT, SIGPIPE}) {
            sigaddset(&signals, number);
        }
        posix_spawnattr_init(&attributes_);
        posix_spawnattr_setsigdefault(&attributes_, &signals);
        posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGDEF);
    }
    DefaultSignals(const DefaultSignals&) = delete;
    DefaultSignals& operator=(const DefaultSignals&) = delete;
    ~DefaultSignals() { posix_spawnattr_destroy(&attributes_); }

    const posix_spawnattr_t* get() const noexcept { return &attributes_; }

private:
    posix_spawnattr_t attributes_{};
};

int waitFor(pid_t child) noexcept {
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

} // namespace

std::string editorCommand() {
    for (const char* const name : {"SVN_EDITOR", "VISUAL", "EDITOR"}) {
        const char* const value = std::getenv(name); // NOLINT(concurrency-mt-unsafe)
        if (value != nullptr && *value != '\0') {
            return value;
        }
    }
    return {};
}

bool editFile(const std::string& editor, const std::string& path, std::string& problem) {
    const KeysIgnored keys;
    const DefaultSignals signals;
    // The command may hold options and quotes, which are a shell's to read; the path is not.
    std::string script = editor + " \"$1\"";
    std::string shell = "sh";
    std::string option = "-c";
    std::string file = path;
    const std::array<char*, 6> arguments{shell.data(), option.data(), script.data(),
                                         shell.data(), file.data(),   nullptr};
    pid_t child = -1;
    const int error =
        posix_spawn(&child, "/bin/sh", nullptr, signals.get(), arguments.data(), environ);
    if (error != 0) {
        problem = "The editor \"" + editor +
                  "\" cannot be started: " + std::generic_category().message(error) + ".";
        return false;
    }
    const int status = waitFor(child);
    if (WIFEXITED(status) && WEXITSTATUS(status) == 0) {
        return true;
    }
    problem = "The editor \"" + editor + "\" did not end well" +
              (WIFEXITED(status) ? ": its exit status is " + std::to_string(WEXITSTATUS(status))
                                 : std::string()) +
              ".";
    return false;
}

} // namespace quen::tools
